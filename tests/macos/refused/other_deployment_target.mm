// refused by: rules
// message: the library's deployment target is 10.15, not 10.13
// link option: -Wl,-platform_version,macos,10.15,10.15
int answer() {
    return 1;
}
