#include "cli/progress_line.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr std::size_t kUsualColumns = 80;
constexpr std::chrono::milliseconds kRedrawInterval{50};
constexpr std::string_view kClearLine = "\r\x1b[K";

// Some terminals join what is counted as several characters here; the line then only ends earlier.
std::size_t columnsOf(UChar32 codePoint) {
    switch (u_charType(codePoint)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
        return 0;
    default:
        break;
    }
    const int width = u_getIntPropertyValue(codePoint, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_FULLWIDTH || width == U_EA_WIDE ? 2 : 1;
}

bool isDrawable(UChar32 codePoint) {
    switch (u_charType(codePoint)) {
    case U_CONTROL_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
        return false;
    default:
        // Marks that turn the direction of writing would turn what follows on the line.
        return u_hasBinaryProperty(codePoint, UCHAR_BIDI_CONTROL) == 0;
    }
}

bool canRedraw(int descriptor) {
    const char* kind = std::getenv("TERM");
    return isatty(descriptor) != 0 && kind != nullptr && std::string_view(kind) != "dumb";
}

} // namespace

std::string progressText(double share, std::string_view word, std::size_t columns) {
    std::string line = std::to_string(std::lround(share * 100)) + "%  ";
    line.insert(0, line.size() < 6 ? 6 - line.size() : 0, ' ');
    if (line.size() >= columns) {
        return line.substr(0, columns);
    }
    std::size_t left = columns - line.size();
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(word.data());
    for (std::size_t offset = 0; offset < word.size();) {
        const std::size_t begin = offset;
        UChar32 codePoint = 0;
        U8_NEXT(bytes, offset, word.size(), codePoint);
        if (codePoint < 0 || !isDrawable(codePoint)) {
            continue;
        }
        const std::size_t width = columnsOf(codePoint);
        if (width > left) {
            break;
        }
        left -= width;
        line += word.substr(begin, offset - begin);
    }
    return line;
}

ProgressLine::ProgressLine(int descriptor) : descriptor_(descriptor), isPossible_(canRedraw(descriptor)) {}

ProgressLine::~ProgressLine() {
    clear();
}

bool ProgressLine::isDue() const {
    return isPossible_ && Clock::now() >= due_;
}

void ProgressLine::show(double share, std::string_view word) {
    if (!isPossible_) {
        return;
    }
    // The last column stays free: a character there makes some terminals go on to the next line.
    write(std::string(kClearLine) + progressText(share, word, columns() - 1));
    isShown_ = true;
    due_ = Clock::now() + kRedrawInterval;
}

void ProgressLine::clear() {
    if (isShown_) {
        write(kClearLine);
        isShown_ = false;
    }
}

std::size_t ProgressLine::columns() const {
    winsize size{};
    if (ioctl(descriptor_, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return kUsualColumns;
    }
    return size.ws_col;
}

// A terminal that is gone loses its progress, nothing else.
void ProgressLine::write(std::string_view bytes) const {
    [[maybe_unused]] const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
}

} // namespace zqm::cli
