#include "tests/faults/damaged_copy.h"

#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace zqm::faults {

namespace fs = std::filesystem;

namespace {

std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// No symbolic link: an engine may read only what lies in its folders.
void share(const fs::path& file, const fs::path& link) {
    std::error_code error;
    fs::create_hard_link(file, link, error);
    if (error) {
        fs::copy_file(file, link);
    }
}

// A byte in a hundred, and a hundred at least, is another one.
void replaceBytes(std::string& bytes, unsigned seed) {
    constexpr std::size_t kOneIn = 100;
    constexpr std::size_t kFewest = 100;
    std::mt19937 generator(seed);
    for (std::size_t count = bytes.size() / kOneIn + kFewest; count > 0 && !bytes.empty(); --count) {
        bytes[generator() % bytes.size()] = static_cast<char>(generator());
    }
}

} // namespace

const char* nameOf(Damage damage) {
    constexpr const char* kNames[] = {"missing", "empty", "truncated", "random"};
    return kNames[static_cast<int>(damage)];
}

DamagedCopy::DamagedCopy(const fs::path& original, const fs::path& file, Damage damage, unsigned seed) {
    for (const auto& entry : fs::recursive_directory_iterator(original)) {
        const fs::path name = fs::relative(entry.path(), original);
        if (entry.is_directory()) {
            fs::create_directory(folder_.path() / name);
        } else if (name != file) {
            share(entry.path(), folder_.path() / name);
        }
    }
    if (damage == Damage::Missing) {
        return;
    }
    std::string bytes = contents(original / file);
    if (damage == Damage::Empty) {
        bytes.clear();
    } else if (damage == Damage::Truncated) {
        bytes.resize(bytes.size() / 2);
    } else {
        replaceBytes(bytes, seed);
    }
    std::ofstream(folder_.path() / file, std::ios::binary) << bytes;
}

} // namespace zqm::faults
