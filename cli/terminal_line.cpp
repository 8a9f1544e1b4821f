#include "cli/terminal_line.h"

#include "cli/display_width.h"

#include <cstdint>
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

std::string fitted(std::string_view text, std::size_t columns) {
    std::string line;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t offset = 0; offset < text.size();) {
        const std::size_t begin = offset;
        UChar32 codePoint = 0;
        U8_NEXT(bytes, offset, text.size(), codePoint);
        if (codePoint < 0 || !isDrawable(codePoint)) {
            continue;
        }
        const std::size_t width = columnsOf(codePoint);
        if (width > columns) {
            break;
        }
        columns -= width;
        line += text.substr(begin, offset - begin);
    }
    return line;
}

std::optional<std::size_t> terminalColumns(int descriptor) {
    winsize size{};
    const bool isTold = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return isTold ? std::optional<std::size_t>(size.ws_col) : std::nullopt;
}

TerminalLine::TerminalLine(int descriptor) : descriptor_(descriptor), isPossible_(canRedraw(descriptor)) {}

TerminalLine::~TerminalLine() {
    clear();
}

bool TerminalLine::isDue() const {
    return isPossible_ && Clock::now() >= due_;
}

void TerminalLine::clear() {
    if (isShown_) {
        write(kClearLine);
        isShown_ = false;
    }
}

// The last column stays free: a character there makes some terminals go on to the next line.
std::size_t TerminalLine::columns() const {
    return terminalColumns(descriptor_).value_or(kUsualColumns) - 1;
}

void TerminalLine::draw(std::string_view line) {
    if (!isPossible_) {
        return;
    }
    write(std::string(kClearLine).append(line));
    isShown_ = true;
    due_ = Clock::now() + kRedrawInterval;
}

// A terminal that is gone loses its line, nothing else.
void TerminalLine::write(std::string_view bytes) const {
    [[maybe_unused]] const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
}

} // namespace zqm::cli
