// refused by: compiler
// message: format specifies type 'long' but the argument has type 'std::int64_t'
#include <cstdint>
#include <cstdio>

int print(char* buffer, std::int64_t value) {
    return std::snprintf(buffer, 32, "%ld", value);
}
