#pragma once

#include "zqmhost/object.h"
#include "zqmhost/value.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace zqm::host {

// What an array holds; the number is the code of that type in Variants.
enum class ElementType {
    Integer = 2,
    Int64 = 3,
    Single = 4,
    Double = 5,
    Date = 7,
    String = 8,
    Object = 9, // Variants and objects of any class
    Boolean = 11,
    Text = 37,
};

// What a plugin reads of an array through the host. Under hosts older than version 2016.0 it may read
// elements without a call.
enum class ArrayCall { UBound, Get };

// A host array. Indexes that are out of range and values that don't fit throw CallError.
class Array : public Object {
public:
    Array() = default; // nil
    // Throws CallError when the object is no array; nil stays nil.
    explicit Array(Object object);

    REALarray array() const;         // borrowed
    ElementType elementType() const; // of each element
    std::size_t size() const;        // 0 for nil
    // The elements, the first being 0.
    Value at(std::size_t index) const;
    std::vector<Value> values() const;

    // Puts the value in the place of an element, or behind the last one.
    void set(std::size_t index, const Value& value);
    void append(const Value& value);
    // New elements are 0, false or nil.
    void resize(std::size_t size);

    // Runs the code before the nth such call from now on (1: the next), once. Code that holds the array keeps
    // it alive until it has run.
    void before(ArrayCall call, std::size_t nth, std::function<void()> code);
};

} // namespace zqm::host
