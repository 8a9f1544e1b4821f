// refused by: compiler
// message: use of undeclared identifier 'memrchr'
#include <cstring>

const void* lastOne(const char* text) {
    return memrchr(text, 1, 2);
}
