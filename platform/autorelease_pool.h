// An autorelease pool that ends with its scope.

#pragma once

#import <Foundation/Foundation.h>

namespace zqm::platform {

class AutoreleasePool {
public:
    AutoreleasePool() : pool_([[NSAutoreleasePool alloc] init]) {}
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool() { [pool_ drain]; }

private:
    NSAutoreleasePool* pool_;
};

} // namespace zqm::platform
