// An object that lives at least as long as this.

#pragma once

#import <Foundation/Foundation.h>

namespace zqm::platform {

class Retained {
public:
    explicit Retained(id object) : object_([object retain]) {}
    Retained(const Retained&) = delete;
    Retained& operator=(const Retained&) = delete;
    ~Retained() { [object_ release]; }

private:
    id object_;
};

} // namespace zqm::platform
