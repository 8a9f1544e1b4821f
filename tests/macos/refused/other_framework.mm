// refused by: rules
// message: Cocoa.framework/Versions/A/Cocoa, which is none of our libraries
// link option: {folder}/stubs/Cocoa.tbd
int answer() {
    return 1;
}
