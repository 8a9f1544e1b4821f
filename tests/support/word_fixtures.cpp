#include "tests/support/word_fixtures.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <map>
#include <optional>
#include <stdexcept>

#include <unicode/utf8.h>

#include "tests/support/utf16.h"

namespace zqm::support {

namespace {

constexpr std::string_view kOpen = "⟦";
constexpr std::string_view kClose = "⟧";
constexpr std::string_view kHeader = "#!";

class MarkedTextParser {
public:
    explicit MarkedTextParser(std::string_view line) : rest_(line) {}

    MarkedText parse() {
        while (!rest_.empty()) {
            if (take(kOpen)) {
                open();
            } else if (take(kClose)) {
                close();
            } else if (take("\\")) {
                escape();
            } else {
                result_.text += rest_.front();
                rest_.remove_prefix(1);
            }
        }
        if (wordStart_) {
            throw std::runtime_error("a word is not closed");
        }
        return std::move(result_);
    }

private:
    bool take(std::string_view expected) {
        if (!rest_.starts_with(expected)) {
            return false;
        }
        rest_.remove_prefix(expected.size());
        return true;
    }

    void open() {
        if (wordStart_) {
            throw std::runtime_error("a word is opened inside a word");
        }
        wordStart_ = result_.text.size();
    }

    void close() {
        if (!wordStart_) {
            throw std::runtime_error("a word is closed that was not opened");
        }
        const std::string word = result_.text.substr(*wordStart_);
        if (word.empty()) {
            throw std::runtime_error("a word is empty");
        }
        const std::size_t position = toUtf16(std::string_view(result_.text).substr(0, *wordStart_)).size();
        result_.words.push_back({.position = position, .length = toUtf16(word).size()});
        result_.cutOut.push_back(word);
        wordStart_.reset();
    }

    void escape() {
        if (take("n")) {
            result_.text += '\n';
        } else if (take("t")) {
            result_.text += '\t';
        } else if (take("\\")) {
            result_.text += '\\';
        } else if (take("u{")) {
            codePoint();
        } else {
            throw std::runtime_error("an unknown escape");
        }
    }

    void codePoint() {
        const std::size_t end = rest_.find('}');
        std::uint32_t code = 0;
        const std::string_view digits = rest_.substr(0, end);
        const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
        if (end == std::string_view::npos || error != std::errc() || stop != digits.data() + digits.size() ||
            !U_IS_UNICODE_CHAR(static_cast<UChar32>(code))) {
            throw std::runtime_error("no character's code in \\u{}");
        }
        rest_.remove_prefix(end + 1);
        std::array<char, U8_MAX_LENGTH> bytes{};
        std::size_t count = 0;
        U8_APPEND_UNSAFE(bytes, count, static_cast<UChar32>(code));
        result_.text.append(bytes.data(), count);
    }

    std::string_view rest_;
    MarkedText result_;
    std::optional<std::size_t> wordStart_; // in bytes
};

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// "#! voice: gmw/en-US"
std::pair<std::string, std::string> parseHeader(std::string_view line) {
    const std::string_view content = line.substr(kHeader.size());
    const std::size_t colon = content.find(':');
    if (colon == std::string_view::npos) {
        throw std::runtime_error("a header line without a colon");
    }
    return {std::string(trimmed(content.substr(0, colon))), std::string(trimmed(content.substr(colon + 1)))};
}

std::vector<WordFixture> readAllWordFixtures() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(ZQM_WORD_FIXTURES)) {
        if (entry.path().extension() == ".txt") {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    std::vector<WordFixture> all;
    for (const std::filesystem::path& file : files) {
        std::ranges::move(readWordFixtures(file), std::back_inserter(all));
    }
    return all;
}

void append(WordFixture& paragraph, const WordFixture& fixture) {
    paragraph.text += '\n';
    const std::size_t begin = toUtf16(paragraph.text).size();
    paragraph.text += fixture.text;
    for (const WordRange& word : fixture.words) {
        paragraph.words.push_back({.position = begin + word.position, .length = word.length});
    }
    paragraph.cutOut.insert(paragraph.cutOut.end(), fixture.cutOut.begin(), fixture.cutOut.end());
}

} // namespace

MarkedText parseMarkedText(std::string_view line) {
    return MarkedTextParser(line).parse();
}

std::vector<WordFixture> readWordFixtures(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream) {
        throw std::runtime_error(file.string() + ": can't be read");
    }
    std::map<std::string, std::string> header;
    std::vector<WordFixture> fixtures;
    std::string line;
    for (std::size_t number = 1; std::getline(stream, line); ++number) {
        const std::string place = file.filename().string() + ":" + std::to_string(number);
        try {
            if (line.starts_with(kHeader)) {
                header.insert(parseHeader(line));
            } else if (!line.empty()) {
                fixtures.push_back({parseMarkedText(line), header.at("language"), header.at("script"),
                                    header.at("voice"), place});
            }
        } catch (const std::exception& error) {
            throw std::runtime_error(place + ": " + error.what());
        }
    }
    return fixtures;
}

const std::vector<WordFixture>& wordFixtures() {
    static const std::vector<WordFixture> fixtures = readAllWordFixtures();
    return fixtures;
}

std::vector<WordFixture> wordFixtureParagraphs() {
    std::map<std::string, WordFixture> paragraphs;
    for (const WordFixture& fixture : wordFixtures()) {
        const auto [paragraph, isNew] = paragraphs.emplace(fixture.voice, fixture);
        if (!isNew) {
            append(paragraph->second, fixture);
        }
    }
    std::vector<WordFixture> all;
    for (auto& [voice, paragraph] : paragraphs) {
        all.push_back(std::move(paragraph));
    }
    return all;
}

} // namespace zqm::support
