#include "cli/terminal_line.h"

#include "cli/display_width.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr std::size_t kUsualColumns = 80;
constexpr std::size_t kUsualRows = 24;
constexpr std::chrono::milliseconds kRedrawInterval{50};
constexpr std::string_view kClearLine = "\r\x1b[K";
constexpr std::string_view kClearBelow = "\x1b[J"; // and the rest of the line

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
        write(toFirstLine().append(kClearLine).append(above_.empty() ? "" : kClearBelow));
        above_.clear();
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
    write(toFirstLine().append(kClearLine).append(line).append(above_.empty() ? "" : kClearBelow));
    above_.clear();
    noteShown();
}

void TerminalLine::draw(std::span<const ScreenLine> lines) {
    if (!isPossible_) {
        return;
    }
    std::string bytes = toFirstLine();
    above_.clear();
    for (const ScreenLine& line : lines) {
        bytes.append(&line == &lines.front() ? "" : "\n").append(kClearLine).append(line.bytes);
        if (&line != &lines.back()) {
            above_.push_back(line.columns);
        }
    }
    write(bytes.append(kClearBelow));
    noteShown();
}

void TerminalLine::noteShown() {
    isShown_ = true;
    due_ = Clock::now() + kRedrawInterval;
}

// Back to where the first of the lines that are shown begins. Terminals that became narrower have broken
// those that were too long.
std::string TerminalLine::toFirstLine() const {
    const std::size_t width = columns() + 1;
    std::size_t rows = 0;
    for (const std::size_t line : above_) {
        rows += std::max<std::size_t>(1, (line + width - 1) / width);
    }
    return rows == 0 ? "" : "\x1b[" + std::to_string(rows) + "A";
}

std::size_t terminalRows(int descriptor) {
    winsize size{};
    return ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 ? kUsualRows : size.ws_row;
}

// A terminal that is gone loses its line, nothing else.
void TerminalLine::write(std::string_view bytes) const {
    [[maybe_unused]] const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
}

} // namespace zqm::cli
