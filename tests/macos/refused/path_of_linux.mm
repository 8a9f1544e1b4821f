// refused by: rules
// message: the library holds the string "/proc/self/exe", which is none of macOS
const char* ownPath() {
    return "/proc/self/exe";
}
