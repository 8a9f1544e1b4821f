// A library that looks at the truth values as it is loaded.
#include "tests/platform/early_booleans.h"

static CFBooleanRef seen[2];

__attribute__((constructor)) static void look(void) {
    seen[0] = kCFBooleanFalse;
    seen[1] = kCFBooleanTrue;
}

CFBooleanRef booleanSeenWhenLoaded(int value) {
    return seen[value];
}
