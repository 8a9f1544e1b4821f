// refused by: golden
// message: CoreText.framework/Versions/B/CoreText
// link option: {folder}/stubs/CoreText.tbd
int answer() {
    return 1;
}
