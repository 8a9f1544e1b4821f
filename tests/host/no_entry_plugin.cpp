// A library that is no plugin.
extern "C" __attribute__((visibility("default"))) int someOtherFunction();
int someOtherFunction() {
    return 1;
}
