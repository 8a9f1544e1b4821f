// refused by: rules
// message: CoreText.framework/Versions/A/CoreText only weakly
// link option: -weak_framework
// link option: CoreText
int answer() {
    return 1;
}
