// Gives a target's function what its corpora hold: files, and all files of folders. Or, with "--calls
// NUMBER", random inputs until they have made so many calls; "--seed NUMBER" makes others, and "--keep FILE"
// keeps the one being tried. Whatever does not hold ends the program.

#include "fuzz/target.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path) {
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::is_directory(path)) {
        files.push_back(path);
        return files;
    }
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        files.push_back(entry.path());
    }
    return files;
}

std::size_t replay(const std::filesystem::path& path) {
    const auto files = filesOf(path);
    for (const auto& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        if (!stream.is_open()) {
            throw std::runtime_error("can't read " + file.string());
        }
        std::fprintf(stderr, "%s\n", file.c_str()); // the last one is what did not hold
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return files.size();
}

std::size_t callsMade(std::size_t inputs) {
    return zqmFuzzedCalls != nullptr ? zqmFuzzedCalls() : inputs;
}

void generate(std::size_t calls, unsigned long seed, const std::string& file) {
    constexpr std::size_t kLongest = 600;
    std::mt19937_64 random(seed);
    std::size_t inputs = 0;
    for (; callsMade(inputs) < calls; ++inputs) {
        std::string bytes(random() % kLongest, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        if (!file.empty()) {
            std::ofstream(file, std::ios::binary) << bytes;
        }
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu calls in %zu inputs held.\n", callsMade(inputs), inputs);
}

struct Options {
    std::size_t calls = 0;
    unsigned long seed = 1;
    std::string file;
    std::vector<std::string> paths;
};

Options optionsOf(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        if (!argument.starts_with("--")) {
            options.paths.push_back(argument);
            continue;
        }
        if (index + 1 == arguments.size()) {
            throw std::runtime_error(argument + " lacks its value");
        }
        const std::string& value = arguments[++index];
        if (argument == "--calls") {
            options.calls = std::stoul(value);
        } else if (argument == "--seed") {
            options.seed = std::stoul(value);
        } else if (argument == "--keep") {
            options.file = value;
        } else {
            throw std::runtime_error(argument + " is no option");
        }
    }
    return options;
}

} // namespace

int main(int count, char** arguments) {
    try {
        if (LLVMFuzzerInitialize != nullptr) {
            LLVMFuzzerInitialize(&count, &arguments);
        }
        const Options options = optionsOf({arguments + 1, arguments + count});
        if (options.calls > 0) {
            generate(options.calls, options.seed, options.file);
            return 0;
        }
        std::size_t inputs = 0;
        for (const std::string& path : options.paths) {
            inputs += replay(path);
        }
        if (inputs == 0) {
            throw std::runtime_error("no inputs");
        }
        std::printf("%zu inputs held.\n", inputs);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
