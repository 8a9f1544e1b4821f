// refused by: golden
// message: identity.txt does not list: install name /usr/local/lib/planted.dylib
// link option: -install_name
// link option: /usr/local/lib/planted.dylib
int answer() {
    return 1;
}
