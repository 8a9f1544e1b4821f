#include "engine/listening/pronunciation_dictionary.h"

#include "engine/listening/model_package.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <functional>
#include <limits>
#include <stdexcept>

namespace zqm::engine {

namespace {

constexpr std::string_view kBlanks = " \t\r";

// Behind "##" and ";;" stand comments.
bool isEntry(std::string_view line) {
    return line.find_first_of(kBlanks) != std::string_view::npos && !line.starts_with("##") &&
           !line.starts_with(";;");
}

// Without the number that tells its pronunciations apart.
std::string_view wordOf(std::string_view line) {
    const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
    const std::size_t number = word.ends_with(')') ? word.rfind('(') : std::string_view::npos;
    return number == 0 ? word : word.substr(0, number);
}

std::string phonesOf(std::string_view line) {
    std::string phones;
    for (std::size_t at = line.find_first_of(kBlanks); at < line.size();) {
        const std::size_t begin = std::min(line.find_first_not_of(kBlanks, at), line.size());
        at = std::min(line.find_first_of(kBlanks, begin), line.size());
        phones += phones.empty() || begin == at ? "" : " ";
        phones += line.substr(begin, at - begin);
    }
    return phones;
}

std::runtime_error unreadable(const std::filesystem::path& file) {
    return std::runtime_error("the pronunciation dictionary " + file.string() + " can't be read: install " +
                              kModelPackage);
}

std::string contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    const std::streamoff size = stream.tellg();
    if (size < 0 || size >= std::numeric_limits<std::uint32_t>::max()) {
        throw unreadable(file);
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    stream.seekg(0);
    if (!stream.read(text.data(), size)) {
        throw unreadable(file);
    }
    return text;
}

} // namespace

PronunciationDictionary::PronunciationDictionary(const std::filesystem::path& file) : text_(contents(file)) {
    index();
    if (std::all_of(slots_.begin(), slots_.end(), [](std::uint32_t begin) { return begin == 0; })) {
        throw std::runtime_error("the pronunciation dictionary " + file.string() + " holds no words");
    }
}

std::string_view PronunciationDictionary::line(std::uint32_t begin) const {
    return std::string_view(text_).substr(begin, text_.find('\n', begin) - begin);
}

std::size_t PronunciationDictionary::slot(std::string_view word) const {
    return std::hash<std::string_view>()(word) & (slots_.size() - 1);
}

// The lines of a word come one behind another in their order, with those of others between them.
void PronunciationDictionary::index() {
    const auto lines = static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n')) + 1;
    slots_.assign(std::bit_ceil(2 * lines), 0);
    for (std::uint32_t begin = 0; begin < text_.size();) {
        const std::string_view entry = line(begin);
        if (isEntry(entry)) {
            std::size_t at = slot(wordOf(entry));
            while (slots_[at] != 0) {
                at = (at + 1) & (slots_.size() - 1);
            }
            slots_[at] = begin + 1;
        }
        begin += static_cast<std::uint32_t>(entry.size()) + 1;
    }
}

std::vector<std::string> PronunciationDictionary::find(std::string_view word) const {
    std::vector<std::string> pronunciations;
    for (std::size_t at = slot(word); slots_[at] != 0; at = (at + 1) & (slots_.size() - 1)) {
        const std::string_view entry = line(slots_[at] - 1);
        if (wordOf(entry) == word) {
            pronunciations.push_back(phonesOf(entry));
        }
    }
    return pronunciations;
}

} // namespace zqm::engine
