// An autorelease pool for a C++ scope, drained also when an exception passes.

#pragma once

#import <Foundation/Foundation.h>

class AutoreleasePool {
public:
    AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool() { [pool_ drain]; }

private:
    NSAutoreleasePool* pool_;
};
