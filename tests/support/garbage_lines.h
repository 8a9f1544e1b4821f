// Lines that are no messages of the conversation between host and engine, for whoever reads them.

#pragma once

#include <string>
#include <vector>

namespace zqm::support {

struct GarbageLine {
    std::string name;
    std::string line; // without its line feed
};

// To neither of them.
inline std::vector<GarbageLine> garbageForBoth() {
    constexpr int kDeepNesting = 100'000;
    return {
        {"no_json", "garbage"},
        {"empty_line", ""},
        {"empty_object", "{}"},
        {"truncated_json", R"({"type":)"},
        {"number_as_type", R"({"type":7})"},
        {"list", "[1,2,3]"},
        {"unknown_type", R"({"type":"explode","utterance":1})"},
        {"deep_nesting", std::string(kDeepNesting, '[')},
        {"invalid_utf8", "{\"type\":\"\xC0\xAF\xFF\"}"},
        {"nul", std::string("{\"type\":\0\"stop\"}", 16)},
    };
}

// To an engine.
inline std::vector<GarbageLine> garbageRequests() {
    std::vector<GarbageLine> lines = garbageForBoth();
    lines.insert(lines.end(), {{"text_as_number", R"({"type":"continue","utterance":"one"})"},
                               {"negative_number", R"({"type":"continue","utterance":-1})"},
                               {"huge_number", R"({"type":"adjust","utterance":1,"manner":{"rate":1e999}})"},
                               {"surplus_member", R"({"type":"continue","utterance":1,"more":1})"},
                               {"event", R"({"type":"started","utterance":1})"},
                               {"missing_descriptor",
                                R"({"type":"listen","session":1000,"reportsLevel":false,"fromFile":true})"}});
    return lines;
}

// To a host.
inline std::vector<GarbageLine> garbageEvents() {
    std::vector<GarbageLine> lines = garbageForBoth();
    lines.insert(lines.end(),
                 {{"text_as_number", R"({"type":"started","utterance":"one"})"},
                  {"negative_number", R"({"type":"started","utterance":-1})"},
                  {"huge_number", R"({"type":"word","utterance":1,"position":0,"length":1,"at":1e999})"},
                  {"surplus_member", R"({"type":"started","utterance":1,"more":1})"},
                  {"request", R"({"type":"continue","utterance":1})"}});
    return lines;
}

} // namespace zqm::support
