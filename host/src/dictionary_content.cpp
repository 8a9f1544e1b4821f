#include "dictionary_content.h"

#include "core.h"
#include "variant_content.h"

#include <functional>
#include <type_traits>
#include <utility>

namespace zqm::host {

std::size_t DictionaryContent::Hash::operator()(const Identity& identity) const {
    return std::visit(
        [](const auto& part) -> std::size_t {
            using Part = std::decay_t<decltype(part)>;
            if constexpr (std::is_same_v<Part, DateContent::Fields>) {
                std::size_t hash = 0;
                for (const std::int64_t field : part) {
                    hash = hash * 31 + static_cast<std::size_t>(field);
                }
                return hash;
            } else {
                return std::hash<Part>()(part);
            }
        },
        identity);
}

DictionaryContent::Identity DictionaryContent::identityOf(const Value& key) {
    const Value& inner = innermost(key);
    const auto& content = inner.content();
    if (const auto* object = std::get_if<Object>(&content)) {
        if (object->isNull()) {
            return std::monostate();
        }
        const auto* handle = Core::active()->handles().known<ObjectHandle>(object->handle());
        const auto* date = handle == nullptr ? nullptr : handle->contentAs<DateContent>();
        return date == nullptr ? Identity(static_cast<const void*>(object->handle()))
                               : Identity(date->fields);
    }
    if (const auto* flag = std::get_if<bool>(&content)) {
        return *flag;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&content)) {
        return *integer;
    }
    if (const auto* number = std::get_if<double>(&content)) {
        const std::int64_t whole = readInteger(inner);
        return static_cast<double>(whole) == *number ? Identity(whole) : Identity(*number);
    }
    if (const auto* string = std::get_if<String>(&content)) {
        return string->bytes();
    }
    if (const auto* text = std::get_if<Text>(&content)) {
        return text->text();
    }
    if (const auto* text = std::get_if<std::string>(&content)) {
        return *text;
    }
    return std::monostate();
}

const DictionaryContent::Entry* DictionaryContent::find(const Value& key) const {
    const auto place = places_.find(identityOf(key));
    return place == places_.end() ? nullptr : &entries_[place->second];
}

void DictionaryContent::set(Object key, Object value) {
    const auto [place, isNew] = places_.try_emplace(identityOf(key), entries_.size());
    if (isNew) {
        entries_.push_back({std::move(key), std::move(value)});
    } else {
        // What ends with the old one may look at this dictionary.
        const Object old = std::exchange(entries_[place->second].value, std::move(value));
    }
}

bool DictionaryContent::remove(const Value& key) {
    const auto place = places_.find(identityOf(key));
    if (place == places_.end()) {
        return false;
    }
    const std::size_t index = place->second;
    const Entry removed = std::move(entries_[index]);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    places_.erase(place);
    for (auto after = places_.begin(); after != places_.end(); ++after) {
        after.value() -= after->second > index ? 1 : 0;
    }
    return true;
}

void DictionaryContent::removeAll() {
    places_.clear();
    const auto removed = std::exchange(entries_, {});
}

} // namespace zqm::host
