// What was found out about a class of objects, remembered: however many of them come, it is found once.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

// An object is one of its class and of that's superclasses, unless its class says otherwise, as proxies do.
inline bool answersForItself(Class type) {
    const SEL question = @selector(isKindOfClass:);
    return class_getMethodImplementation(type, question) !=
           class_getMethodImplementation([NSObject class], question);
}

template <typename Row>
class ClassMemo {
public:
    ClassMemo() : rows_(CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr)) {}
    ClassMemo(const ClassMemo&) = delete;
    ClassMemo& operator=(const ClassMemo&) = delete;

    // What `find` answers of the object: a row, or null. Objects that answer themselves of what kind they
    // are are looked at one by one.
    template <typename Find>
    const Row* rowOf(NSObject* object, Find&& find) {
        static constexpr char kNone = 0;
        const Class type = object_getClass(object);
        if (const void* known = CFDictionaryGetValue(rows_, type)) {
            return known != &kNone ? static_cast<const Row*>(known) : nullptr;
        }
        const Row* row = find(object);
        if (!answersForItself(type)) {
            CFDictionarySetValue(rows_, type, row != nullptr ? static_cast<const void*>(row) : &kNone);
        }
        return row;
    }

private:
    CFMutableDictionaryRef rows_; // for the life of the process, as classes are
};
