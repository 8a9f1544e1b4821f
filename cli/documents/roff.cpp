#include "cli/documents/roff.h"

namespace zqm::cli::roff {
namespace {

std::string inQuotes(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : escaped(text)) {
        quoted += character == '"' ? "\\(dq" : std::string(1, character);
    }
    return quoted + "\"";
}

} // namespace

// A hyphen stays one that can be copied to a command line; a period or an apostrophe begins no request.
std::string escaped(std::string_view text) {
    std::string escaped;
    bool isLineBegin = true;
    for (const char character : text) {
        switch (character) {
        case '\\':
            escaped += "\\e";
            break;
        case '-':
            escaped += "\\-";
            break;
        case '\'':
            escaped += "\\(aq";
            break;
        case '~':
            escaped += "\\(ti";
            break;
        case '^':
            escaped += "\\(ha";
            break;
        case '.':
            escaped += isLineBegin ? "\\&." : ".";
            break;
        default:
            escaped += character;
        }
        isLineBegin = character == '\n';
    }
    return escaped;
}

std::string bold(std::string_view text) {
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + escaped(text) + "\\fR";
}

std::string title(std::string_view name, std::string_view section, std::string_view source,
                  std::string_view manual) {
    return ".TH " + inQuotes(name) + " " + inQuotes(section) + " \"\" " + inQuotes(source) + " " +
           inQuotes(manual) + "\n.nh\n.ad l\n"; // names of options are not to be cut or spread
}

std::string heading(std::string_view text) {
    return ".SH " + inQuotes(text) + "\n";
}

std::string subheading(std::string_view text) {
    return ".SS " + inQuotes(text) + "\n";
}

std::string paragraphs(std::string_view text) {
    std::string lines = ".PP\n";
    for (;;) {
        const std::size_t end = text.find('\n');
        lines.append(escaped(text.substr(0, end))).append("\n");
        if (end == std::string_view::npos) {
            return lines;
        }
        text.remove_prefix(end + 1);
        if (text.starts_with('\n')) {
            lines += ".PP\n";
            text.remove_prefix(1);
        } else {
            lines += kLineBreak;
        }
    }
}

std::string item(std::string_view name, std::string_view text) {
    return ".TP\n" + std::string(name) + "\n" + escaped(text) + "\n";
}

} // namespace zqm::cli::roff
