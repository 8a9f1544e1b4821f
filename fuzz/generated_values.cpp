#include "fuzz/generated_values.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

namespace zqm::fuzz {

namespace {

using host::ElementType;
using host::Value;

constexpr int kDeepest = 4;

constexpr std::int64_t kIntegers[]{0,
                                   1,
                                   -1,
                                   2,
                                   127,
                                   65536,
                                   std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min(),
                                   std::numeric_limits<std::int64_t>::max(),
                                   std::numeric_limits<std::int64_t>::min()};

constexpr double kReals[]{0,
                          -0.0,
                          0.5,
                          -1,
                          180,
                          1e308,
                          -1e308,
                          std::numeric_limits<double>::denorm_min(),
                          std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::infinity(),
                          std::numeric_limits<double>::quiet_NaN()};

// What the plugin's members look for.
constexpr const char* kTexts[]{"",
                               "stat",
                               "erro",
                               "inpt",
                               "char",
                               "nmbr",
                               "rate",
                               "pbas",
                               "pmod",
                               "volm",
                               "vers",
                               "sync",
                               "phsy",
                               "cvox",
                               "dlim",
                               "rset",
                               "opaf",
                               "TEXT",
                               "PHON",
                               "NORM",
                               "LTRL",
                               "Prefix",
                               "Suffix",
                               "DictionaryLocaleIdentifier",
                               "DictionaryModificationDate",
                               "DictionaryPronunciations",
                               "DictionaryAbbreviations",
                               "DictionaryEntrySpelling",
                               "DictionaryEntryPhonemes",
                               "gmw/en-US",
                               "Hello [[rate 300]]there.",
                               "file:///nonexistent/speech.wav",
                               "Gr\u00fc\u00dfe \U0001F600"};

constexpr std::uint32_t kEncodings[]{
    host::encoding::kUtf8,     host::encoding::kUtf16, host::encoding::kUtf32,         host::encoding::kNone,
    host::encoding::kMacRoman, host::encoding::kAscii, host::encoding::kWindowsLatin1, 0x12345678};

constexpr ElementType kElements[]{ElementType::Integer, ElementType::Int64,   ElementType::Single,
                                  ElementType::Double,  ElementType::Date,    ElementType::String,
                                  ElementType::Object,  ElementType::Boolean, ElementType::Text};

} // namespace

void GeneratedValues::clear() {
    objects_.clear();
    for (host::Array& array : arrays_) {
        array.resize(0);
    }
    for (host::Dictionary& dictionary : dictionaries_) {
        dictionary.removeAll();
    }
    arrays_.clear();
    dictionaries_.clear();
}

// Never a path of the machine: what is spoken may be asked to go there.
std::string GeneratedValues::text() {
    const std::size_t choice = source_.choice(std::size(kTexts) + 5);
    if (choice < std::size(kTexts)) {
        return kTexts[choice];
    }
    if (choice == std::size(kTexts)) {
        return outputUrl_;
    }
    std::string bytes = source_.text();
    std::ranges::replace(bytes, '/', '|');
    return bytes;
}

Value GeneratedValues::string() {
    switch (source_.choice(4)) {
    case 0:
        return host::String();
    case 1:
        return runtime_.string(text(), kEncodings[source_.choice(std::size(kEncodings))]);
    default:
        return runtime_.string(text());
    }
}

std::int64_t GeneratedValues::integer() {
    const std::size_t choice = source_.choice(std::size(kIntegers) + 2);
    return choice < std::size(kIntegers) ? kIntegers[choice] : source_.number<std::int64_t>();
}

double GeneratedValues::real() {
    const std::size_t choice = source_.choice(std::size(kReals) + 2);
    return choice < std::size(kReals) ? kReals[choice] : source_.number<double>();
}

host::Object GeneratedValues::date() {
    std::array<std::int64_t, 6> fields{};
    for (std::int64_t& field : fields) {
        field = integer();
    }
    return runtime_.date(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]);
}

Value GeneratedValues::element(ElementType type, int depth) {
    switch (type) {
    case ElementType::Integer:
    case ElementType::Int64:
        return integer();
    case ElementType::Single:
        return static_cast<float>(source_.number<std::int32_t>());
    case ElementType::Double:
        return real();
    case ElementType::Date:
        return source_.flag() ? date() : host::Object();
    case ElementType::String:
        return string();
    case ElementType::Boolean:
        return source_.flag();
    case ElementType::Text:
        return source_.flag() ? Value(runtime_.text("text")) : Value(host::Text());
    case ElementType::Object:
        break;
    }
    return runtime_.variant(any(depth + 1));
}

Value GeneratedValues::array(int depth) {
    const ElementType type = kElements[source_.choice(std::size(kElements))];
    host::Array made = runtime_.array(type);
    arrays_.push_back(made);
    for (std::size_t count = source_.choice(5); count > 0; --count) {
        made.append(element(type, depth));
    }
    return made;
}

Value GeneratedValues::dictionary(int depth) {
    host::Dictionary made = runtime_.dictionary();
    dictionaries_.push_back(made);
    for (std::size_t count = source_.choice(5); count > 0; --count) {
        const Value key = source_.flag() ? string() : any(depth + 1);
        made.setValue(key, source_.choice(16) == 0 ? Value(made) : any(depth + 1));
    }
    return made;
}

host::Object GeneratedValues::object() {
    return objects_.empty() ? host::Object() : objects_[source_.choice(objects_.size())];
}

Value GeneratedValues::any(int depth) {
    switch (source_.choice(depth < kDeepest ? 15 : 9)) {
    case 0:
        return nullptr;
    case 1:
        return source_.flag();
    case 2:
        return integer();
    case 3:
        return real();
    case 4:
    case 5:
        return string();
    case 6:
        return date();
    case 7:
        return source_.flag() ? Value(runtime_.text("text \U0001F600")) : Value(host::Text());
    case 8:
        return object();
    case 9:
    case 10:
        return dictionary(depth);
    case 11:
        return array(depth);
    case 12:
        return runtime_.memoryBlock(source_.text());
    case 13:
        return runtime_.folderItem("/nonexistent/speech.wav");
    default:
        // Any code, with a content that needn't be of its type.
        return runtime_.variant(static_cast<std::int32_t>(source_.choice(64)), any(depth + 1));
    }
}

Value GeneratedValues::of(const host::TypeDescription& type) {
    if (source_.choice(16) == 0) {
        return any();
    }
    if (type.isArray) {
        host::Array made = runtime_.array(ElementType::String);
        for (std::size_t count = source_.choice(5); count > 0; --count) {
            made.append(string());
        }
        return made;
    }
    if (type.name == "String") {
        return string();
    }
    if (type.name == "Boolean") {
        return source_.flag();
    }
    if (type.name == "Integer") {
        return integer();
    }
    if (type.name == "Double") {
        return real();
    }
    if (type.name == "dictionary") {
        return dictionary(0);
    }
    return any();
}

} // namespace zqm::fuzz
