// Python values as host values, and the other way round; docs/python.md has the table.

#pragma once

#include <zqmhost/zqmhost.h>

#include <deque>
#include <pybind11/pybind11.h>
#include <string>
#include <vector>

namespace zqm::python {

// The declared types, as "String" or "String()", that the overloads of a method have at each place. An empty
// list has no type of its own, and bytes stand for text without encoding or for a memory block.
class ExpectedTypes {
public:
    ExpectedTypes() = default;
    explicit ExpectedTypes(std::vector<std::vector<std::string>> types) : types_(std::move(types)) {}

    const std::vector<std::string>& at(std::size_t place) const {
        static const std::vector<std::string> kAny;
        return place < types_.size() ? types_[place] : kAny;
    }

private:
    std::vector<std::vector<std::string>> types_;
};

// Throws what Python throws: TypeError for values of kinds that the host has not, OverflowError for integers
// beyond 64 bits.
host::Value toHost(pybind11::handle value, const std::vector<std::string>& expected = {});
pybind11::object toPython(const host::Value& value);
pybind11::object toPython(const host::Object& object);

// Arguments of one call. An instance of zqm.ByRef is passed by reference and given the value that it has
// after the call, also when that throws; None where only references are declared is one that nobody reads.
class PassedArguments {
public:
    PassedArguments(const pybind11::tuple& values, const ExpectedTypes& expected);
    PassedArguments(const PassedArguments&) = delete;
    PassedArguments& operator=(const PassedArguments&) = delete;

    const std::vector<host::Value>& values() const { return values_; }
    void takeBack();

private:
    struct Reference {
        pybind11::object holder;
        host::Value value;
    };

    std::deque<Reference> references_; // never moved: arguments point into it
    std::vector<host::Value> values_;
};

} // namespace zqm::python
