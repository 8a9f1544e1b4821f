// refused by: compiler
// message: is unavailable: introduced in macOS 10.15
#include <filesystem>

bool exists(const char* path) {
    return std::filesystem::exists(path);
}
