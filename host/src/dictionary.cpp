#include "zqmhost/dictionary.h"

#include "dictionary_content.h"
#include "object_views.h"

#include <utility>

namespace zqm::host {

Dictionary::Dictionary(Object object) : Object(checked<DictionaryContent>(std::move(object))) {}

std::size_t Dictionary::count() const {
    return isNull() ? 0 : contentOf<DictionaryContent>(core(), *this).entries().size();
}

std::vector<Value> Dictionary::keys() const {
    std::vector<Value> result;
    for (const auto& entry : contentOf<DictionaryContent>(core(), *this).entries()) {
        result.emplace_back(entry.key);
    }
    return result;
}

bool Dictionary::hasKey(const Value& key) const {
    return contentOf<DictionaryContent>(core(), *this).find(key) != nullptr;
}

Value Dictionary::value(const Value& key) const {
    const auto* entry = contentOf<DictionaryContent>(core(), *this).find(key);
    if (entry == nullptr) {
        throw CallError("the dictionary has no such key");
    }
    return entry->value;
}

void Dictionary::setValue(const Value& key, const Value& value) {
    contentOf<DictionaryContent>(core(), *this).set(core()->boxed(key), core()->boxed(value));
}

bool Dictionary::remove(const Value& key) {
    return contentOf<DictionaryContent>(core(), *this).remove(key);
}

void Dictionary::removeAll() {
    contentOf<DictionaryContent>(core(), *this).removeAll();
}

void Dictionary::before(DictionaryCall call, std::size_t nth, std::function<void()> code) {
    contentOf<DictionaryContent>(core(), *this).hooks(call).before(nth, std::move(code));
}

} // namespace zqm::host
