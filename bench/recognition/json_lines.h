// How phrases and outcomes are written.

#pragma once

#include "bench/recognition/outcome.h"

#include <nlohmann/json.hpp>

namespace zqm::recognition {

void to_json(nlohmann::json& json, const Phrase& phrase);
void from_json(const nlohmann::json& json, Phrase& phrase);
void to_json(nlohmann::json& json, const Outcome& outcome);
void from_json(const nlohmann::json& json, Outcome& outcome);

// Each line of the stream; throws std::runtime_error that names the line that is none.
template <typename Entry>
std::vector<Entry> readLines(std::istream& in) {
    std::vector<Entry> entries;
    std::size_t number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        try {
            entries.push_back(nlohmann::json::parse(line).get<Entry>());
        } catch (const nlohmann::json::exception& exception) {
            throw std::runtime_error("line " + std::to_string(number) + ": " + exception.what());
        }
    }
    return entries;
}

} // namespace zqm::recognition
