// Loads the library of its argument, registers the classes that this has to offer, and prints what that took:
// wall time and processor time in nanoseconds, page faults, and the number of classes. A host that does
// nothing with what is registered, so that only the library's own cost counts; a program of its own, so that
// nothing is loaded before.

#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

typedef void Function(void);
typedef Function* Resolver(const char*);
typedef void PluginMain(Resolver*);

struct Spent {
    long long wallTime;
    long long processorTime;
    long faults;
};

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

static long long nanoseconds(clockid_t clock) {
    struct timespec now;
    clock_gettime(clock, &now);
    return now.tv_sec * 1000000000LL + now.tv_nsec;
}

static struct Spent spent(void) {
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return (struct Spent){nanoseconds(CLOCK_MONOTONIC), nanoseconds(CLOCK_PROCESS_CPUTIME_ID),
                          usage.ru_minflt};
}

int main(int count, char** arguments) {
    if (count != 2) {
        fputs("which library?\n", stderr);
        return 2;
    }
    const struct Spent before = spent();
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
    const struct Spent after = spent();
    printf("%lld %lld %ld %d\n", after.wallTime - before.wallTime, after.processorTime - before.processorTime,
           after.faults - before.faults, registeredClasses);
    fflush(stdout);
    _exit(0); // what follows is no part of loading
}
