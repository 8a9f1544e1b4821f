// refused by: linker
// message: framework not found for -framework Planted
// link option: -framework
// link option: Planted
int answer() {
    return 1;
}
