#include "cli/voices/voice_text.h"

#include "cli/command_line/message.h"
#include "cli/terminal/colours.h"
#include "cli/terminal/terminal_line.h"
#include "cli/text/display_width.h"
#include "cli/text/wrapped_text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zqm::cli {
namespace {

constexpr std::size_t kMarkWidth = 2;
constexpr std::size_t kBetween = 2;

struct Column {
    std::string title;
    std::string Voice::*attribute;
    std::size_t width = 0;
};

// Those that are left out first, where there is no room, stand last.
std::vector<Column> columnsFor(const std::vector<Voice>& voices) {
    std::vector<Column> table{{"IDENTIFIER", &Voice::identifier},
                              {"NAME", &Voice::name},
                              {"LANGUAGE", &Voice::language},
                              {"GENDER", &Voice::gender}};
    for (Column& column : table) {
        column.width = column.title.size();
        for (const Voice& voice : voices) {
            column.width = std::max(column.width, columnsOf(voice.*column.attribute));
        }
    }
    return table;
}

std::size_t widthOf(const std::vector<Column>& table) {
    std::size_t width = kMarkWidth;
    for (const Column& column : table) {
        width += column.width + kBetween;
    }
    return width - kBetween;
}

// What stays when nothing more can be left out is cut.
std::string tableLine(std::string line, const std::vector<Column>& table, std::size_t columns,
                      const auto& cellOf) {
    for (const Column& column : table) {
        const std::string cell = fitted(cellOf(column), column.width);
        line += cell;
        if (&column != &table.back()) {
            line.append(column.width - columnsOf(cell) + kBetween, ' ');
        }
    }
    return fitted(line, columns);
}

} // namespace

std::string voicesTable(const std::vector<Voice>& voices, std::size_t columns, bool isColoured) {
    constexpr std::size_t kFewest = 2; // columns of the table
    std::vector<Column> table = columnsFor(voices);
    while (table.size() > kFewest && widthOf(table) > columns) {
        table.pop_back();
    }
    std::string text =
        bold(tableLine("  ", table, columns, [](const Column& column) { return column.title; }), isColoured) +
        "\n";
    for (const Voice& voice : voices) {
        const std::string line = tableLine(voice.isDefault ? "* " : "  ", table, columns,
                                           [&](const Column& column) { return voice.*column.attribute; });
        text.append(bold(line, isColoured && voice.isDefault)).append("\n");
    }
    return text;
}

std::string voicesLines(const std::vector<Voice>& voices) {
    std::string lines;
    for (const Voice& voice : voices) {
        for (const auto attribute : {&Voice::identifier, &Voice::language, &Voice::gender}) {
            lines.append(oneLine(voice.*attribute)).append("\t");
        }
        lines.append(oneLine(voice.name)).append("\n");
    }
    return lines;
}

std::string voiceText(const Voice& voice, std::size_t columns, bool isColoured) {
    const std::array attributes{
        std::pair("Name", voice.name + (voice.isDefault ? " (the default voice)" : "")),
        std::pair("Identifier", voice.identifier),
        std::pair("Language", voice.language),
        std::pair("Locale", voice.locale),
        std::pair("Gender", voice.gender),
        std::pair("Age", voice.age > 0 ? std::to_string(voice.age) : std::string()),
        std::pair("Demo text", voice.demoText)};
    constexpr std::size_t kLabelWidth = 12;
    std::string text;
    for (const auto& [name, value] : attributes) {
        if (!value.empty()) {
            const std::string label = std::string(name) + ":";
            text += bold(label, isColoured) + std::string(kLabelWidth - label.size(), ' ') +
                    wrapped(oneLine(value), columns, kLabelWidth).substr(kLabelWidth);
        }
    }
    return text;
}

} // namespace zqm::cli
