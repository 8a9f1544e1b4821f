#include "platform/voice_catalogue.h"

#include "platform/engine_link.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <strings.h>

namespace zqm::platform {
namespace {

using protocol::Voice;

constexpr std::string_view kAmericanEnglish = "gmw/en-US";
// The other voice for Mandarin reads many ideographs as if their transcription were English.
constexpr std::string_view kMandarin = "sit/cmn-Latn-pinyin";

// Locales name some languages otherwise than voices do.
struct LanguageAlias {
    std::string_view inLocales;
    std::string_view inVoices;
};
constexpr auto kAliases = std::to_array<LanguageAlias>({{"no", "nb"}, {"zh", "cmn"}});

std::optional<protocol::Voices> askEngine() {
    std::string error;
    const auto link = EngineLink::open(error);
    if (!link) {
        return std::nullopt;
    }
    const auto deadline = engineDeadline();
    protocol::Event event;
    if (link->send(protocol::ListVoices{}, {}, deadline) &&
        link->wait(event, deadline) == EngineLink::Input::Event) {
        if (auto* const voices = std::get_if<protocol::Voices>(&event)) {
            return std::move(*voices);
        }
    }
    link->kill();
    return std::nullopt;
}

bool isSame(std::string_view left, std::string_view right) {
    return left.size() == right.size() && ::strncasecmp(left.data(), right.data(), left.size()) == 0;
}

std::string_view primaryLanguage(std::string_view language) {
    return language.substr(0, language.find('-'));
}

// "de_AT.UTF-8@euro" as BCP 47 has it: "de-AT".
std::string languageOfLocale(std::string_view locale) {
    std::string language(locale.substr(0, locale.find_first_of(".@")));
    std::ranges::replace(language, '_', '-');
    for (const LanguageAlias& alias : kAliases) {
        if (isSame(primaryLanguage(language), alias.inLocales)) {
            language.replace(0, alias.inLocales.size(), alias.inVoices);
            break;
        }
    }
    return language;
}

const protocol::Voices& catalogue() {
    static protocol::Voices voices;
    static bool known = false;
    if (!known) {
        if (auto answer = askEngine()) {
            voices = std::move(*answer);
            known = !voices.voices.empty(); // an engine that finds none may do so later
        }
    }
    return voices;
}

} // namespace

const std::vector<Voice>& availableVoices() {
    return catalogue().voices;
}

EngineInfo engineInfo() {
    return {catalogue().synthesizer, catalogue().version};
}

const Voice* findVoice(std::string_view identifier) {
    const auto& voices = availableVoices();
    const auto found = std::ranges::find(voices, identifier, &Voice::identifier);
    return found != voices.end() ? &*found : nullptr;
}

const Voice* voiceForLocale(std::span<const Voice> voices, std::string_view locale) {
    if (voices.empty()) {
        return nullptr;
    }
    const std::string language = languageOfLocale(locale);
    const std::string_view primary = primaryLanguage(language);
    const auto first = [voices](auto&& matches) -> const Voice* {
        const auto found = std::ranges::find_if(voices, matches);
        return found != voices.end() ? &*found : nullptr;
    };
    if (isSame(primary, "cmn")) {
        if (const auto* voice = first([](const Voice& each) { return each.identifier == kMandarin; })) {
            return voice;
        }
    }
    if (const auto* voice = first([&](const Voice& each) { return isSame(each.language, language); })) {
        return voice;
    }
    if (const auto* voice = first([&](const Voice& each) { return isSame(each.language, primary); })) {
        return voice;
    }
    const auto* related =
        first([&](const Voice& each) { return isSame(primaryLanguage(each.language), primary); });
    if (related != nullptr && !isSame(primary, "en")) {
        return related;
    }
    if (const auto* voice = first([](const Voice& each) { return each.identifier == kAmericanEnglish; })) {
        return voice;
    }
    return related != nullptr ? related : &voices.front();
}

std::string messageLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): as every locale is read
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

} // namespace zqm::platform
