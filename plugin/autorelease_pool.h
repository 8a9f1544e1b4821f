// An autorelease pool for a C++ scope, drained also when an exception passes.

#pragma once

#import <Foundation/Foundation.h>

class AutoreleasePool {
public:
    AutoreleasePool() : pool_([[poolClass() alloc] init]) {}
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool() { [pool_ drain]; }

private:
    // Where the runtime looks a class up by its name, that takes a third of what a pool costs.
    static Class poolClass() {
        static const Class found = [NSAutoreleasePool class];
        return found;
    }

    NSAutoreleasePool* pool_;
};
