// refused by: compiler
// message: 'ext/stdio_filebuf.h' file not found
#include <ext/stdio_filebuf.h>
