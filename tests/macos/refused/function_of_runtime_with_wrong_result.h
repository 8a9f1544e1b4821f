// refused by: declarations
// message: class_getVersion: returns long, recorded is int
#include <objc/objc.h>

extern "C" long class_getVersion(Class aClass);
