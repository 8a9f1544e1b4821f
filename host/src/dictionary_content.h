#pragma once

#include "call_hooks.h"
#include "date_content.h"
#include "object_content.h"
#include "zqmhost/dictionary.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tsl/robin_set.h>
#include <variant>
#include <vector>

namespace zqm::host {

inline constexpr std::string_view kDictionaryClass = "Dictionary";

// Keys and values are Variants. Everything but removing takes the same time however many there are.
class DictionaryContent final : public ObjectContent {
public:
    static constexpr const char* kWhat = "a Dictionary";

    DictionaryContent() { places_.max_load_factor(kFullest); }

    // What makes keys the same. A whole number is one whatever its type.
    using Identity = std::variant<std::monostate, bool, std::int64_t, double, std::string,
                                  DateContent::Fields, const void*>;

    struct Entry {
        Object key;
        Object value;
        Identity identity; // of the key
        std::size_t hash;  // of the identity
    };

    const std::vector<Entry>& entries() const { return entries_; }
    // Null when there is none.
    const Entry* find(const Value& key) const;
    void set(Object key, Object value);
    bool remove(const Value& key);
    void removeAll();

    CallHooks& hooks(DictionaryCall call) { return call == DictionaryCall::Key ? keys_ : values_; }

private:
    static Identity identityOf(const Value& key);

    // What is looked through is no more than this: where an entry is, beside some bits of its hash. Entries
    // themselves are mostly used in their order.
    using Place = std::uint32_t;
    struct Sought {
        const Identity& identity;
        std::size_t hash;
    };
    struct Hash {
        using is_transparent = void;
        const std::vector<Entry>* entries;
        std::size_t operator()(Place place) const { return (*entries)[place].hash; }
        std::size_t operator()(const Sought& sought) const { return sought.hash; }
    };
    struct Same {
        using is_transparent = void;
        const std::vector<Entry>* entries;
        bool operator()(Place one, Place other) const { return one == other; }
        bool operator()(Place place, const Sought& sought) const {
            return (*entries)[place].identity == sought.identity;
        }
        bool operator()(const Sought& sought, Place place) const { return (*this)(place, sought); }
    };
    using Places = tsl::robin_set<Place, Hash, Same, std::allocator<Place>, true>;
    static constexpr float kFullest = 0.8F; // a small table stays in the processor's caches for longer

    std::vector<Entry> entries_;
    Places places_{0, Hash{&entries_}, Same{&entries_}};
    CallHooks keys_;
    CallHooks values_;
};

} // namespace zqm::host
