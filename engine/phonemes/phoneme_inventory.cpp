#include "engine/phonemes/phoneme_inventory.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace zqm::engine {

namespace {

// Type of a phoneme in the compiled data.
enum class Kind : unsigned char { Pause = 0, Stress = 1, Deleted = 14, Invalid = 15 };

struct Entry {
    std::string name;
    unsigned char code = 0;
    Kind kind = Kind::Invalid;
};

struct Set {
    std::string name;
    std::size_t parent = 0; // counted from 1; 0: none
    std::vector<Entry> entries;
};

// Reads the compiled table: a count, then each set with the phonemes in which it differs from its parent.
class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    std::vector<Set> sets() {
        constexpr std::size_t kPadding = 3;
        const std::size_t count = byte();
        text(kPadding);
        std::vector<Set> sets(count);
        for (std::size_t index = 0; index < count; ++index) {
            sets[index] = set();
            if (sets[index].parent > index) {
                fail();
            }
        }
        if (at_ != bytes_.size()) {
            fail();
        }
        return sets;
    }

private:
    [[noreturn]] static void fail() {
        throw std::runtime_error("espeak-ng's phoneme tables are missing or of another version");
    }

    std::string_view text(std::size_t length) {
        if (bytes_.size() - at_ < length) {
            fail();
        }
        at_ += length;
        return bytes_.substr(at_ - length, length);
    }

    unsigned char byte() { return static_cast<unsigned char>(text(1).front()); }

    Set set() {
        constexpr std::size_t kPadding = 2;
        constexpr std::size_t kNameLength = 32;
        Set set;
        const std::size_t count = byte();
        set.parent = byte();
        text(kPadding);
        const std::string_view name = text(kNameLength);
        set.name = name.substr(0, name.find('\0'));
        std::generate_n(std::back_inserter(set.entries), count, [&] { return entry(); });
        return set;
    }

    Entry entry() {
        constexpr std::size_t kNameLength = 4;
        constexpr std::size_t kFlagsAndProgram = 6;
        constexpr std::size_t kLengths = 4;
        Entry entry;
        // Behind a stroke stands what tells variants apart in the sources; it isn't reported.
        const std::string_view name = text(kNameLength);
        entry.name = name.substr(0, name.find_first_of(std::string_view("\0/", 2)));
        text(kFlagsAndProgram);
        entry.code = byte();
        entry.kind = static_cast<Kind>(byte());
        text(kLengths);
        return entry;
    }

    std::string_view bytes_;
    std::size_t at_ = 0;
};

bool isSpoken(const Entry& entry) {
    return entry.kind != Kind::Stress && entry.kind != Kind::Deleted && entry.kind != Kind::Invalid &&
           !entry.name.empty();
}

using EntryByCode = std::array<const Entry*, std::numeric_limits<unsigned char>::max() + 1>;

EntryByCode withParents(const std::vector<Set>& sets, const Set& set) {
    EntryByCode entries = set.parent == 0 ? EntryByCode{} : withParents(sets, sets[set.parent - 1]);
    for (const Entry& entry : set.entries) {
        entries[entry.code] = &entry;
    }
    return entries;
}

std::string contents(const std::filesystem::path& path) {
    if (!std::filesystem::is_regular_file(path)) {
        return {};
    }
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

PhonemeInventory readPhonemeInventory(const std::filesystem::path& data) {
    const std::string table = contents(data / "phontab");
    const std::vector<Set> sets = Reader(table).sets();
    PhonemeInventory inventory;
    for (const Set& set : sets) {
        std::vector<std::string>& names = inventory[set.name];
        for (const Entry* const entry : withParents(sets, set)) {
            if (entry != nullptr && isSpoken(*entry)) {
                names.push_back(entry->name);
            }
        }
    }
    return inventory;
}

std::string phonemeSetOf(const std::filesystem::path& data, const std::string& voiceIdentifier,
                         const PhonemeInventory& inventory) {
    // A voice names its set, or has its language's; a dialect without one has that of the language.
    std::istringstream lines(contents(data / "lang" / voiceIdentifier));
    std::string language;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string key;
        std::string value;
        words >> key >> value;
        if (key == "phonemes") {
            return value;
        }
        if (key == "language" && language.empty()) {
            language = value;
        }
    }
    return inventory.contains(language) ? language : language.substr(0, language.find('-'));
}

} // namespace zqm::engine
