#pragma once

#include "zqmhost/object.h"
#include "zqmhost/value.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace zqm::host {

// What a plugin asks a dictionary for by its methods.
enum class DictionaryCall { Key, Value };

// A host dictionary of Variants, which keeps the order in which keys came. Keys are the same when they are
// the same text byte for byte, the same number whatever its type, the same Boolean, a date with the same
// fields, nil, or else the same object.
class Dictionary : public Object {
public:
    Dictionary() = default; // nil
    // Throws CallError when the object is no dictionary; nil stays nil.
    explicit Dictionary(Object object);

    std::size_t count() const;       // 0 for nil
    std::vector<Value> keys() const; // in the order in which they came
    // Whether there is such a key.
    bool hasKey(const Value& key) const;
    // Throws CallError when there is no such key.
    Value value(const Value& key) const;
    void setValue(const Value& key, const Value& value);
    bool remove(const Value& key); // answers whether it was there; takes as long as the dictionary is
    void removeAll();

    // Runs the code before the nth such call of a plugin from now on (1: the next), once. Code that holds the
    // dictionary keeps it alive until it has run.
    void before(DictionaryCall call, std::size_t nth, std::function<void()> code);
};

} // namespace zqm::host
