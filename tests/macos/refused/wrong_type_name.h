// refused by: declarations
// message: CFOptionFlags: stands for unsigned int, recorded is unsigned long
typedef unsigned int CFOptionFlags;
