#include "dictionary_content.h"

#include "core.h"
#include "variant_content.h"

#include <functional>
#include <type_traits>
#include <utility>

namespace zqm::host {

namespace {

std::size_t hashOf(const DictionaryContent::Identity& identity) {
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

} // namespace

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
    const Identity identity = identityOf(key);
    const auto place = places_.find(Sought{identity, hashOf(identity)});
    return place == places_.end() ? nullptr : &entries_[*place];
}

void DictionaryContent::set(Object key, Object value) {
    Identity identity = identityOf(key);
    const std::size_t hash = hashOf(identity);
    const auto place = places_.find(Sought{identity, hash});
    if (place == places_.end()) {
        entries_.push_back({std::move(key), std::move(value), std::move(identity), hash});
        places_.insert(static_cast<Place>(entries_.size() - 1));
    } else {
        // What ends with the old one may look at this dictionary.
        const Object old = std::exchange(entries_[*place].value, std::move(value));
    }
}

bool DictionaryContent::remove(const Value& key) {
    const Entry* found = find(key);
    if (found == nullptr) {
        return false;
    }
    const auto entry = entries_.begin() + (found - entries_.data());
    const Entry removed = std::move(*entry);
    entries_.erase(entry);
    places_.clear();
    for (std::size_t place = 0; place < entries_.size(); ++place) {
        places_.insert(static_cast<Place>(place));
    }
    return true;
}

void DictionaryContent::removeAll() {
    places_.clear();
    const auto removed = std::exchange(entries_, {});
}

} // namespace zqm::host
