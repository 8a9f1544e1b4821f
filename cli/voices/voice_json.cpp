#include "cli/voices/voice_json.h"

#include <nlohmann/json.hpp>

namespace zqm::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json jsonOf(const Voice& voice) {
    Json json{{"identifier", voice.identifier}, {"name", voice.name}};
    const auto add = [&json](const char* key, const std::string& value) {
        if (!value.empty()) {
            json[key] = value;
        }
    };
    add("language", voice.language);
    add("locale", voice.locale);
    add("gender", voice.gender);
    if (voice.age > 0) {
        json["age"] = voice.age;
    }
    add("demoText", voice.demoText);
    json["default"] = voice.isDefault;
    return json;
}

std::string textOf(const Json& json) {
    return json.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace

std::string voiceJson(const Voice& voice) {
    return textOf(jsonOf(voice));
}

std::string voicesJson(const std::vector<Voice>& voices) {
    Json list = Json::array();
    for (const Voice& voice : voices) {
        list.push_back(jsonOf(voice));
    }
    return textOf(list);
}

} // namespace zqm::cli
