// refused by: golden
// message: leaks_without_export_list.txt does not list: __Z6answerv
// compile option: -fvisibility=default
int answer() {
    return 1;
}
