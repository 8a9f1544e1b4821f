#include "cli/documents/completion.h"

namespace zqm::cli {

const std::vector<Shell>& shells() {
    static const std::vector<Shell> all{
        {"bash", bashCompletion}, {"zsh", zshCompletion}, {"fish", fishCompletion}};
    return all;
}

std::vector<std::string> shellNames() {
    std::vector<std::string> names;
    for (const Shell& shell : shells()) {
        names.emplace_back(shell.name);
    }
    return names;
}

std::string quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        quoted += character == '\'' ? "'\\''" : std::string(1, character);
    }
    return quoted + "'";
}

std::string escaped(std::string_view text, std::string_view characters) {
    std::string escaped;
    for (const char character : text) {
        if (characters.find(character) != std::string_view::npos) {
            escaped += '\\';
        }
        escaped += character;
    }
    return escaped;
}

} // namespace zqm::cli
