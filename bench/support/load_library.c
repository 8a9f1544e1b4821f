// Loads the library of its argument, registers the classes that this has to offer, and prints what that took:
// the nanoseconds that the processor spent, and the number of classes. A host that does
// nothing with what is registered, so that only the library's own cost counts; a program of its own, so that
// nothing is loaded before.

#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

typedef void Function(void);
typedef Function* Resolver(const char*);
typedef void PluginMain(Resolver*);

static int registeredClasses;

static double version(void) {
    return 2019.01;
}

static void registerVersion(int32_t number) {
    (void)number;
}

static void registerClass(void* record) {
    (void)record;
    ++registeredClasses;
}

static Function* resolve(const char* name) {
    if (strcmp(name, "REALGetRBVersion") == 0) {
        return (Function*)version;
    }
    if (strcmp(name, "RegisterPluginVersion") == 0) {
        return (Function*)registerVersion;
    }
    return strcmp(name, "PluginRegisterClass") == 0 ? (Function*)registerClass : NULL;
}

static long long spent(void) {
    struct timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

int main(int count, char** arguments) {
    if (count != 2) {
        fputs("which library?\n", stderr);
        return 2;
    }
    const long long before = spent();
    void* const library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    // ISO C has no conversion of what dlsym answers into a function.
    PluginMain* pluginMain = NULL;
    *(void**)&pluginMain = dlsym(library, "REALPluginMain");
    if (pluginMain != NULL) {
        pluginMain(resolve);
    }
    const long long after = spent();
    printf("%lld %d\n", after - before, registeredClasses);
    fflush(stdout);
    _exit(0); // what follows is no part of loading
}
