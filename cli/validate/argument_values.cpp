#include "cli/validate/argument_values.h"

#include "cli/validate/passed_arguments.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace zqm::cli {
namespace {

using host::Object;
using host::TypeDescription;
using host::Value;

constexpr std::size_t kManyWords = 4096;
constexpr std::size_t kLongText = 20'000;
constexpr std::size_t kLongArray = 1'000;
// An object may need much, a process of its own perhaps; the others of an array are these again.
constexpr std::size_t kDistinct = 4;
// An object may need others to be made, and these others; those behind that are nil.
constexpr int kDeepest = 3;
constexpr std::string_view kFileScheme = "file://";

// What a value of each type is made of; those that are not here are classes.
enum class Kind { Boolean, Int32, UInt32, Integer, Single, Double, String, Text, Variant, Ptr, Object };

struct NamedKind {
    std::string_view name;
    Kind kind;
    std::optional<host::ElementType> element; // of an array of them
};

constexpr NamedKind kKinds[] = {
    {"Boolean", Kind::Boolean, host::ElementType::Boolean},
    {"Int32", Kind::Int32, std::nullopt},
    {"UInt32", Kind::UInt32, std::nullopt},
    {"Integer", Kind::Integer, host::ElementType::Integer},
    {"Int64", Kind::Integer, host::ElementType::Int64},
    {"Single", Kind::Single, host::ElementType::Single},
    {"Double", Kind::Double, host::ElementType::Double},
    {"String", Kind::String, host::ElementType::String},
    {"Text", Kind::Text, host::ElementType::Text},
    {"Variant", Kind::Variant, host::ElementType::Object},
    {"Ptr", Kind::Ptr, std::nullopt},
    {"Date", Kind::Object, host::ElementType::Date},
};
constexpr NamedKind kOfClass{"", Kind::Object, host::ElementType::Object};

const NamedKind& kindOf(const TypeDescription& type) {
    const auto* found =
        std::ranges::find_if(kKinds, [&](const NamedKind& named) { return sameName(named.name, type.name); });
    return found == std::end(kKinds) ? kOfClass : *found;
}

// Nil of a type tells overloads apart.
Value nilOf(const TypeDescription& type) {
    switch (type.isArray ? Kind::Object : kindOf(type).kind) {
    case Kind::String:
        return host::String();
    case Kind::Text:
        return host::Text();
    default:
        return Object();
    }
}

template <typename Integer>
std::vector<Value> endsOf() {
    using Limits = std::numeric_limits<Integer>;
    return {0,
            1,
            static_cast<Integer>(-1),
            Limits::min(),
            Limits::max(),
            static_cast<Integer>(Limits::max() - 1)};
}

std::vector<Value> endsOfInteger() {
    std::vector<Value> values = endsOf<std::int64_t>();
    for (const std::int64_t value : {std::int64_t{std::numeric_limits<std::int32_t>::min()} - 1,
                                     std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1,
                                     std::int64_t{std::numeric_limits<std::uint32_t>::max()} + 1}) {
        values.emplace_back(value);
    }
    return values;
}

template <typename Real>
std::vector<Value> endsOfReal() {
    using Limits = std::numeric_limits<Real>;
    return {Real{0},
            -Real{0},
            Real{-1},
            Limits::lowest(),
            Limits::max(),
            Limits::denorm_min(),
            Limits::infinity(),
            -Limits::infinity(),
            Limits::quiet_NaN()};
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t index = 0; index < count; ++index) {
        result += text;
    }
    return result;
}

} // namespace

ArgumentValues::ArgumentValues(host::Runtime& runtime, const PluginClasses& classes, std::uint64_t seed,
                               std::string folder)
    : runtime_(&runtime), classes_(&classes), random_(seed), folder_(std::move(folder)) {}

void ArgumentValues::learn(std::string text) {
    if (words_.size() < kManyWords && !mayBeElsewhere(text) &&
        std::ranges::find(words_, text) == words_.end()) {
        words_.push_back(std::move(text));
    }
}

bool ArgumentValues::mayBeElsewhere(std::string_view path) const {
    if (path.starts_with(kFileScheme)) {
        path.remove_prefix(kFileScheme.size());
    }
    const std::string inside = folder_ + '/';
    const bool isInside = path.starts_with(inside);
    path.remove_prefix(isInside ? inside.size() : 0);
    return (!isInside && path.find('/') != std::string_view::npos) ||
           path.find("..") != std::string_view::npos || path.find('~') != std::string_view::npos;
}

// Numbers are drawn one after the other, never two in one call's arguments: compilers differ in which comes
// first.
std::string ArgumentValues::fileName() {
    return folder_ + "/file" + std::to_string(below(4)) + ".wav";
}

// Not the folder itself: a member may delete what it is given.
host::FolderItem ArgumentValues::folderInside() {
    const std::string path = folder_ + "/folder";
    std::error_code ignored; // the plugin may have put something else there
    std::filesystem::create_directory(path, ignored);
    return runtime_->folderItem(path);
}

std::string ArgumentValues::text() {
    static constexpr std::array kTexts{"Hello", "two words", "A sentence, and another one. 3.5 of them!",
                                       "na\xC3\xAFve \xF0\x9F\x98\x80", "0"};
    const std::size_t kinds = words_.empty() ? 2 : 4;
    switch (below(kinds)) {
    case 0:
        return kTexts[below(kTexts.size())];
    case 1:
        return std::string(kFileScheme) + fileName();
    default:
        return oneOf(words_);
    }
}

Value ArgumentValues::object(const std::string& className) {
    if (sameName(className, "Dictionary")) {
        host::Dictionary dictionary = runtime_->dictionary();
        for (std::size_t count = below(4); count > 0; --count) {
            const std::string key = text();
            const char* held = below(2) == 0 ? "String" : "Integer";
            dictionary.setValue(key, ordinary({.name = held}));
        }
        return Object(dictionary);
    }
    if (sameName(className, "Date")) {
        const auto year = static_cast<std::int64_t>(1970 + below(80));
        const auto month = static_cast<std::int64_t>(1 + below(12));
        return runtime_->date(year, month);
    }
    if (sameName(className, "MemoryBlock")) {
        return Object(runtime_->memoryBlock(text()));
    }
    if (sameName(className, "FolderItem")) {
        return Object(runtime_->folderItem(fileName()));
    }
    if (const host::ClassDescription* type = classes_->find(className)) {
        return constructed(*type);
    }
    try {
        Object object = runtime_->create(className);
        object.call("Constructor");
        return object;
    } catch (const host::Error&) {
    }
    try {
        return runtime_->create(className);
    } catch (const host::Error&) {
        return Object(); // a class of another plugin
    }
}

Object ArgumentValues::constructed(const host::ClassDescription& type) {
    if (depth_ == kDeepest) {
        return {};
    }
    const PluginClasses::Methods constructors = classes_->constructorsOf(type);
    if (constructors.empty()) {
        try {
            return runtime_->create(type.name);
        } catch (const host::Error&) {
            return {};
        }
    }
    const std::size_t first = below(constructors.size());
    for (std::size_t index = 0; index < constructors.size(); ++index) {
        Object made = constructedBy(constructors[(first + index) % constructors.size()], type);
        if (!made.isNull()) {
            return made;
        }
    }
    return {};
}

// Nil when it raises: a program has no such object.
Object ArgumentValues::constructedBy(const host::MethodDescription& constructor,
                                     const host::ClassDescription& type) {
    ++depth_;
    const std::vector<Value> chosen = ordinaryFor(constructor);
    --depth_;
    try {
        const PassedArguments arguments(constructor, chosen);
        Object object = runtime_->create(type.name);
        object.callDescribed(constructor, arguments.values());
        return object;
    } catch (const host::Error&) {
        return {};
    }
}

Value ArgumentValues::array(const TypeDescription& type, std::size_t size) {
    const auto element = kindOf(type).element;
    if (!element) {
        return Object();
    }
    std::vector<Value> values;
    for (std::size_t index = 0; index < size; ++index) {
        const bool isAgain = index >= kDistinct && kindOf(type).kind == Kind::Object;
        values.push_back(isAgain ? values[index % kDistinct] : ordinary({.name = type.name}));
    }
    return Object(runtime_->array(*element, values));
}

Value ArgumentValues::ordinary(const TypeDescription& type) {
    if (type.isArray) {
        return array(type, 1 + below(4));
    }
    switch (kindOf(type).kind) {
    case Kind::Boolean:
        return below(2) == 0;
    case Kind::Int32:
    case Kind::UInt32:
    case Kind::Integer:
        return below(4);
    case Kind::Single:
    case Kind::Double:
        return static_cast<double>(below(1000)) / 4;
    case Kind::String:
        return text();
    case Kind::Text:
        return runtime_->text(text());
    case Kind::Variant: {
        static constexpr std::array kHeld{"String", "Integer", "Double", "Boolean", "Dictionary", "Date"};
        const char* held = kHeld[below(kHeld.size())];
        return runtime_->variant(ordinary({.name = held}));
    }
    case Kind::Ptr:
        return 0; // where else to is the plugin's own matter
    case Kind::Object:
        break;
    }
    return object(type.name);
}

std::vector<Value> ArgumentValues::ordinaryFor(const host::MethodDescription& method) {
    std::vector<Value> values;
    for (const host::ParameterDescription& parameter : method.parameters) {
        values.push_back(ordinary(parameter.type));
    }
    return values;
}

std::vector<Value> ArgumentValues::extremes(const TypeDescription& type) {
    if (type.isArray) {
        std::vector<Value> values{nilOf(type), array(type, 0), array(type, kLongArray)};
        const auto element = kindOf(type).element;
        if (element == host::ElementType::String) {
            values.emplace_back(Object(runtime_->array(*element, {host::String(), "", host::String()})));
        } else if (element == host::ElementType::Object) {
            values.emplace_back(Object(runtime_->array(*element, {Object(), Object()})));
        }
        return values;
    }
    switch (kindOf(type).kind) {
    case Kind::Boolean:
        return {false, true};
    case Kind::Int32:
        return endsOf<std::int32_t>();
    case Kind::UInt32:
        return endsOf<std::uint32_t>();
    case Kind::Integer:
        return endsOfInteger();
    case Kind::Single:
        return endsOfReal<float>();
    case Kind::Double:
        return endsOfReal<double>();
    case Kind::String: {
        namespace encoding = host::encoding;
        constexpr std::uint32_t kUnknownEncoding = 0x7FFF0001;
        const auto string = [&](std::string_view bytes, std::uint32_t number) {
            return Value(runtime_->string(bytes, number));
        };
        using namespace std::string_view_literals;
        return {nilOf(type),
                "",
                string("a\0b"sv, encoding::kUtf8),
                string("\xC3(\xFF\xFE", encoding::kUtf8),
                string("\xE9t\xE9", encoding::kNone),
                string("\x3D\xD8"sv, encoding::kUtf16),
                string("abc"sv, encoding::kUtf16),
                string("abcde"sv, encoding::kUtf32),
                string("bytes", kUnknownEncoding),
                "%s%n%@\n\t[[rate 1e999]]",
                repeated("x", kLongText),
                repeated("long words \xE2\x82\xAC ", kLongText / 10)};
    }
    case Kind::Text:
        return {nilOf(type), runtime_->text(""), runtime_->text(repeated("x", kLongText))};
    case Kind::Variant: {
        std::vector<Value> values{Object(), runtime_->variant(host::String()), runtime_->memoryBlock(0)};
        for (const char* held :
             {"String", "Integer", "Double", "Boolean", "Dictionary", "Date", "FolderItem"}) {
            for (const Value& value : extremes({.name = held})) {
                values.emplace_back(runtime_->variant(value));
            }
        }
        for (const char* held : {"String", "Integer", "Double", "Boolean", "Variant", "Date"}) {
            values.emplace_back(array({.name = held, .isArray = true}, 3));
        }
        return values;
    }
    case Kind::Ptr:
        return {0};
    case Kind::Object:
        break;
    }
    std::vector<Value> values{nilOf(type)};
    if (sameName(type.name, "Dictionary")) {
        host::Dictionary odd = runtime_->dictionary();
        odd.setValue(Object(), 1);
        odd.setValue(1.5, runtime_->dictionary());
        odd.setValue("", Object());
        values.insert(values.end(), {Object(runtime_->dictionary()), Object(odd)});
    } else if (sameName(type.name, "Date")) {
        constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
        values.insert(values.end(), {runtime_->date(kMost, kMost, kMost), runtime_->date(-kMost, 0, 0),
                                     runtime_->date(2000, 2, 30, 25, 61, 61)});
    } else if (sameName(type.name, "MemoryBlock")) {
        values.emplace_back(runtime_->memoryBlock(0));
    } else if (sameName(type.name, "FolderItem")) {
        values.insert(values.end(), {folderInside(), runtime_->folderItem(folder_ + "/no/such/file"),
                                     runtime_->folderItem(folder_ + "/" + repeated("n", 300))});
    } else {
        try {
            values.emplace_back(runtime_->create(type.name)); // without a "Constructor"
        } catch (const host::Error&) { // NOLINT(bugprone-empty-catch): a class of another plugin
        }
    }
    return values;
}

} // namespace zqm::cli
