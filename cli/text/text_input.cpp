#include "cli/text/text_input.h"

#include "cli/command_line/failure.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

class InputFile {
public:
    InputFile(const std::string& path, const std::string& name)
        : descriptor_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)), name_(name) {
        if (descriptor_ < 0) {
            fail();
        }
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() {
        if (descriptor_ > STDIN_FILENO) {
            close(descriptor_);
        }
    }

    std::string readAll() {
        std::string content;
        std::array<char, 8192> buffer;
        for (;;) {
            const ssize_t count = read(descriptor_, buffer.data(), buffer.size());
            if (count > 0) {
                content.append(buffer.data(), static_cast<std::size_t>(count));
            }
            if (content.size() > kLongestText) {
                throw Failure(name_ + " is longer than " + std::to_string(kLongestText) + " bytes");
            }
            if (count == 0) {
                return content;
            }
            if (count < 0 && errno != EINTR) {
                fail();
            }
        }
    }

private:
    [[noreturn]] void fail() const { throw Failure("can't read " + name_ + ": " + std::strerror(errno)); }

    int descriptor_;
    const std::string& name_;
};

// Calls with each code point and the offset behind it, a negative one where the bytes are no UTF-8, as long
// as the answer is true.
template <typename Function>
void forEachCodePoint(std::string_view text, Function function) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t offset = 0;
    UChar32 codePoint = 0;
    do {
        if (offset == text.size()) {
            return;
        }
        U8_NEXT(bytes, offset, text.size(), codePoint);
    } while (function(codePoint, offset));
}

} // namespace

std::string inputName(const std::string& path) {
    return path == "-" ? "standard input" : path;
}

std::string readInput(const std::string& path) {
    const std::string name = inputName(path);
    return InputFile(path, name).readAll();
}

std::size_t validUtf8(std::string_view text) {
    std::size_t valid = 0;
    forEachCodePoint(text, [&valid](UChar32 codePoint, std::size_t offset) {
        if (codePoint >= 0) {
            valid = offset;
        }
        return codePoint >= 0;
    });
    return valid;
}

void requireUtf8(std::string_view text, std::string_view what) {
    if (const std::size_t valid = validUtf8(text); valid != text.size()) {
        throw Failure(std::string(what) + " is not valid UTF-8 at byte " + std::to_string(valid));
    }
}

std::string_view withoutByteOrderMark(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    return text;
}

std::string_view trimmed(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    auto end = static_cast<std::int32_t>(text.size()); // texts are shorter than kLongestText
    UChar32 codePoint = 0;
    std::int32_t begin = 0;
    for (std::int32_t next = 0; next < end; begin = next) {
        U8_NEXT(bytes, next, end, codePoint);
        if (u_isUWhiteSpace(codePoint) == 0) {
            break;
        }
    }
    for (std::int32_t previous = end; previous > begin; end = previous) {
        U8_PREV(bytes, begin, previous, codePoint);
        if (u_isUWhiteSpace(codePoint) == 0) {
            break;
        }
    }
    return text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

std::string readText(const TextOptions& options) {
    std::string name = "the text";
    std::string text;
    if (options.text) {
        text = *options.text;
    } else {
        name = inputName(options.input);
        text = readInput(options.input);
    }
    requireUtf8(text, name);
    text.erase(0, text.size() - withoutByteOrderMark(text).size());
    if (trimmed(text).empty()) {
        throw Failure("there is nothing to speak: " + name +
                      (text.empty() ? " is empty" : " has nothing but white space"));
    }
    return text;
}

} // namespace zqm::cli
