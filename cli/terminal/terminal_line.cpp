#include "cli/terminal/terminal_line.h"

#include "cli/text/display_width.h"

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
constexpr UChar32 kEscape = 0x1B; // begins a sequence that ends with a letter
constexpr std::string_view kClearLine = "\r\x1b[K";
constexpr std::string_view kClearBelow = "\x1b[J"; // and the rest of the line

bool canRedraw(int descriptor) {
    const char* kind = std::getenv("TERM");
    return isatty(descriptor) != 0 && kind != nullptr && std::string_view(kind) != "dumb";
}

// How many rows a line takes on a terminal of so many columns: one, unless that became narrower since the
// line was drawn and has broken it.
std::size_t rowsOf(std::string_view line, std::size_t width) {
    std::size_t rows = 1;
    std::size_t column = 0;
    bool isEscape = false;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(line.data());
    for (std::size_t offset = 0; offset < line.size();) {
        UChar32 codePoint = 0;
        U8_NEXT(bytes, offset, line.size(), codePoint);
        if (isEscape || codePoint == kEscape) {
            isEscape = codePoint == kEscape || u_isalpha(codePoint) == 0;
            continue;
        }
        const std::size_t columns = columnsOf(codePoint);
        if (column + columns > width) {
            ++rows;
            column = 0;
        }
        column += columns;
    }
    return rows;
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

// The last column stays free: a character there makes some terminals go on to the next line.
std::size_t lineColumns(int descriptor) {
    return terminalColumns(descriptor).value_or(kUsualColumns) - 1;
}

TerminalLine::TerminalLine(int descriptor) : descriptor_(descriptor), isPossible_(canRedraw(descriptor)) {}

TerminalLine::~TerminalLine() {
    clear();
}

bool TerminalLine::isDue() const {
    return isPossible_ && Clock::now() >= due_;
}

void TerminalLine::clear() {
    if (isShown()) {
        write(toFirstLine().append(kClearLine).append(shown_.size() > 1 ? kClearBelow : ""));
        shown_.clear();
    }
}

void TerminalLine::draw(std::string_view line) {
    const std::string only(line);
    draw(std::span(&only, 1));
}

void TerminalLine::draw(std::span<const std::string> lines) {
    if (!isPossible_) {
        return;
    }
    std::string bytes = toFirstLine();
    for (const std::string& line : lines) {
        bytes.append(&line == &lines.front() ? "" : "\n").append(kClearLine).append(line);
    }
    const bool hadMore = lines.size() > 1 || shown_.size() > 1;
    write(bytes.append(hadMore ? kClearBelow : ""));
    shown_.assign(lines.begin(), lines.end());
    due_ = Clock::now() + kRedrawInterval;
}

// Back to the row where the first of the lines that are shown begins.
std::string TerminalLine::toFirstLine() const {
    std::size_t rows = 0;
    for (const std::string& line : shown_) {
        rows += rowsOf(line, columns() + 1);
    }
    return rows <= 1 ? "" : "\x1b[" + std::to_string(rows - 1) + "A";
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
