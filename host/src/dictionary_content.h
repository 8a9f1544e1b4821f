#pragma once

#include "call_hooks.h"
#include "date_content.h"
#include "object_content.h"
#include "zqmhost/dictionary.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tsl/robin_map.h>
#include <variant>
#include <vector>

namespace zqm::host {

inline constexpr std::string_view kDictionaryClass = "Dictionary";

// Keys and values are Variants. Everything but removing takes the same time however many there are.
class DictionaryContent final : public ObjectContent {
public:
    static constexpr const char* kWhat = "a Dictionary";

    struct Entry {
        Object key;
        Object value;
    };

    const std::vector<Entry>& entries() const { return entries_; }
    // Null when there is none.
    const Entry* find(const Value& key) const;
    void set(Object key, Object value);
    bool remove(const Value& key);
    void removeAll();

    CallHooks& hooks(DictionaryCall call) { return call == DictionaryCall::Key ? keys_ : values_; }

private:
    // What makes keys the same. A whole number is one whatever its type.
    using Identity = std::variant<std::monostate, bool, std::int64_t, double, std::string,
                                  DateContent::Fields, const void*>;
    struct Hash {
        std::size_t operator()(const Identity& identity) const;
    };
    static Identity identityOf(const Value& key);

    std::vector<Entry> entries_;
    tsl::robin_map<Identity, std::size_t, Hash> places_; // in entries_
    CallHooks keys_;
    CallHooks values_;
};

} // namespace zqm::host
