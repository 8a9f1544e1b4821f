// refused by: declarations
// message: CFStringPlanted: the record has no such function
extern "C" void CFStringPlanted(void);
