// refused by: compiler
// message: unknown type name 'DrvQEl'
#include <CoreServices/CoreServices.h>

unsigned long sizeOfQueueElement() {
    DrvQEl element;
    return sizeof element;
}
