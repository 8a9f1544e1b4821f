// The functions of the Objective-C runtime.

#pragma once

#include <objc/objc.h>

MACOS_C_BEGIN

typedef void (*IMP)(void);

id objc_getClass(const char* name);
Class object_getClass(id obj);
const char* class_getName(Class cls);
Class class_getSuperclass(Class cls);
IMP class_getMethodImplementation(Class cls, SEL name);
BOOL sel_isEqual(SEL left, SEL right);

MACOS_C_END
