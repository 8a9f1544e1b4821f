// Host values of every kind, as the bytes of an input say.

#pragma once

#include "fuzz/byte_source.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>
#include <zqmhost/zqmhost.h>

namespace zqm::fuzz {

class GeneratedValues {
public:
    // The URL is that of a file which may be written.
    GeneratedValues(host::Runtime& runtime, ByteSource& source, std::string outputUrl)
        : runtime_(runtime), source_(source), outputUrl_(std::move(outputUrl)) {}
    GeneratedValues(const GeneratedValues&) = delete;
    GeneratedValues& operator=(const GeneratedValues&) = delete;
    ~GeneratedValues() { clear(); }

    // Drops all that was made. Collections are emptied first, so that one that holds itself ends all the
    // same.
    void clear();

    // For what is declared so; now and then it is of another type.
    host::Value of(const host::TypeDescription& type);
    host::Value any(int depth = 0);

    // Objects that may stand for any value: those that the input made.
    std::vector<host::Object>& objects() { return objects_; }

private:
    std::string text();
    host::Value string();
    std::int64_t integer();
    double real();
    host::Object date();
    host::Value array(int depth);
    host::Value dictionary(int depth);
    host::Value element(host::ElementType type, int depth);
    host::Object object();

    host::Runtime& runtime_;
    ByteSource& source_;
    std::string outputUrl_;
    std::vector<host::Object> objects_;
    std::vector<host::Array> arrays_;
    std::vector<host::Dictionary> dictionaries_;
};

} // namespace zqm::fuzz
