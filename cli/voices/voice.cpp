#include "cli/voices/voice.h"

#include "cli/command_line/closest.h"

#include <zqmhost/zqmhost.h>

#include <algorithm>
#include <utility>

namespace zqm::cli {
namespace {

constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";
constexpr std::size_t kMostNamed = 3; // near voices in a message

std::string genderOf(host::Runtime& runtime, const std::string& platformsWord) {
    const auto found = std::ranges::find_if(kGenders, [&](const Gender& gender) {
        return runtime.callShared("NSVoiceZQM", gender.constant).asText() == platformsWord;
    });
    return platformsWord.empty() || found == kGenders.end() ? "" : std::string(found->name);
}

Voice voiceOf(host::Runtime& runtime, const std::string& identifier) {
    host::Object attributes = runtime.callShared(kSynthesizer, "attributesForVoice", identifier).asObject();
    Voice voice;
    voice.identifier = identifier;
    voice.name = identifier;
    if (!attributes.isNull()) {
        voice.name = attributes.call("Name").asText();
        voice.language = attributes.call("Language").asText();
        voice.locale = attributes.call("LocaleIdentifier").asText();
        voice.gender = genderOf(runtime, attributes.call("Gender").asText());
        voice.age = attributes.call("Age").asInteger();
        voice.demoText = attributes.call("DemoText").asText();
    }
    return voice;
}

// By whichever of its names the voice is the nearest.
std::size_t mistakesFor(std::string_view typed, const Voice& voice) {
    const std::string_view identifier = voice.identifier;
    return std::min({mistakes(typed, identifier), mistakes(typed, voice.name),
                     mistakes(typed, voice.language),
                     mistakes(typed, identifier.substr(identifier.find('/') + 1))});
}

Failure noSuchVoice(std::string_view name, const std::vector<Voice>& voices) {
    using Near = std::pair<std::size_t, std::string_view>;
    std::vector<Near> near;
    near.reserve(voices.size());
    for (const Voice& voice : voices) {
        near.emplace_back(mistakesFor(name, voice), voice.identifier);
    }
    std::ranges::stable_sort(near, {}, &Near::first);
    std::string named;
    for (std::size_t index = 0; index < near.size() && index < kMostNamed && near[index].first != kFar;
         ++index) {
        named.append(index == 0 ? "near it: " : ", ").append(near[index].second);
    }
    return Failure(
        "there is no voice \"" + std::string(name) + "\" (" +
        (named.empty() ? "zqmspeech voices lists them)" : named + "; zqmspeech voices lists all)"));
}

} // namespace

std::vector<std::string> genderNames() {
    std::vector<std::string> names;
    names.reserve(kGenders.size());
    for (const Gender& gender : kGenders) {
        names.emplace_back(gender.name);
    }
    return names;
}

std::vector<Voice> installedVoices(host::Runtime& runtime) {
    const host::Array array(runtime.callShared(kSynthesizer, "availableVoices").asObject());
    const std::vector<host::Value> identifiers = array.values();
    if (identifiers.empty()) {
        throw noVoices(); // whatever else is asked would wait for another engine
    }
    const std::string defaultVoice = runtime.callShared(kSynthesizer, "defaultVoice").asText();
    std::vector<Voice> voices;
    for (const host::Value& identifier : identifiers) {
        voices.push_back(voiceOf(runtime, identifier.asText()));
        voices.back().isDefault = voices.back().identifier == defaultVoice;
    }
    return voices;
}

const Voice& findVoice(const std::vector<Voice>& voices, std::string_view name) {
    for (const auto attribute : {&Voice::identifier, &Voice::name}) {
        const auto found = std::ranges::find_if(
            voices, [&](const Voice& voice) { return folded(voice.*attribute) == folded(name); });
        if (found != voices.end()) {
            return *found;
        }
    }
    throw noSuchVoice(name, voices);
}

bool speaks(const Voice& voice, std::string_view language) {
    const std::string tag = folded(voice.language);
    const std::string wanted = folded(language);
    return tag == wanted || tag.starts_with(wanted + "-");
}

Failure noVoices() {
    return Failure("there are no voices: the speech engine is missing, does not answer, or finds none");
}

} // namespace zqm::cli
