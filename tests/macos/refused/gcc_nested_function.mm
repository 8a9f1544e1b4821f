// refused by: compiler
// message: function definition is not allowed here
int one() {
    int inner() {
        return 1;
    }
    return inner();
}
