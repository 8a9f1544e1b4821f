#include "builtin_classes.h"
#include "builtin_function.h"
#include "dictionary_content.h"
#include "variant_content.h"

#include <utility>

namespace zqm::host {

namespace {

constexpr const char* kValue = "Dictionary.Value";

std::int64_t count(Core& /*core*/, DictionaryContent& dictionary, std::int64_t /*parameter*/) {
    return static_cast<std::int64_t>(dictionary.entries().size());
}

REALobject key(Core& core, DictionaryContent& dictionary, std::int64_t index) {
    dictionary.hooks(DictionaryCall::Key).called(core);
    const auto& entries = dictionary.entries();
    if (index < 0 || static_cast<std::size_t>(index) >= entries.size()) {
        core.raise("OutOfBoundsException", "a dictionary of " + std::to_string(entries.size()) +
                                               " keys has none at " + std::to_string(index));
        return nullptr;
    }
    return Object(entries[static_cast<std::size_t>(index)].key).release();
}

REALobject value(Core& core, DictionaryContent& dictionary, REALobject key) {
    dictionary.hooks(DictionaryCall::Value).called(core);
    const Object wanted = core.borrow(key, kValue);
    if (wanted.isNull() && key != nullptr) {
        return nullptr;
    }
    const auto* entry = dictionary.find(wanted);
    if (entry == nullptr) {
        const String text = readString(core, wanted);
        core.raise("KeyNotFoundException", text.isNull() ? "no such key" : "no key " + text.bytes());
        return nullptr;
    }
    return Object(entry->value).release();
}

void setValue(Core& core, DictionaryContent& dictionary, REALobject key, REALobject value) {
    Object itsKey = core.borrow(key, kValue);
    Object itsValue = core.borrow(value, kValue);
    const bool handles = itsKey.handle() == key && itsValue.handle() == value;
    if (handles) {
        dictionary.set(std::move(itsKey), std::move(itsValue));
    }
}

std::unique_ptr<ObjectContent> makeContent() {
    return std::make_unique<DictionaryContent>();
}

} // namespace

std::vector<BuiltinClass> dictionaryClasses() {
    return {
        {.name = kDictionaryClass,
         .properties = {{.name = "Count",
                         .type = "Integer",
                         .getter = memberFunction<"Dictionary.Count", count>()}},
         .methods = {{.declaration = "Key(index As Integer) As Variant",
                      .function = memberFunction<"Dictionary.Key", key>()},
                     {.declaration = "Value(key As Variant) As Variant",
                      .function = memberFunction<"Dictionary.Value", value>()},
                     {.declaration = "Value(key As Variant, Assigns _value As Variant)",
                      .function = memberFunction<"Dictionary.Value", setValue>()}},
         .makeContent = makeContent},
    };
}

} // namespace zqm::host
