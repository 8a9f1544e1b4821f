// Which voice speaks for a locale, where not all of the usual ones are there.

#include "platform/voice_catalogue.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zqm::platform {
namespace {

using protocol::Voice;

std::string chosen(const std::vector<Voice>& voices, std::string_view locale) {
    const Voice* const voice = voiceForLocale(voices, locale);
    return voice == nullptr ? "none" : voice->identifier;
}

Voice voice(const std::string& identifier, const std::string& language) {
    return {.identifier = identifier, .name = identifier, .language = language, .gender = "neuter"};
}

TEST(VoiceChoice, OfNoVoicesIsNone) {
    EXPECT_EQ(chosen({}, "en_US.UTF-8"), "none");
}

TEST(VoiceChoice, IsTheLanguageWithItsRegionOrElseWithout) {
    const std::vector<Voice> voices{voice("a", "de"), voice("b", "pt"), voice("c", "pt-BR")};
    EXPECT_EQ(chosen(voices, "pt_BR.UTF-8"), "c");
    EXPECT_EQ(chosen(voices, "pt_AO.UTF-8"), "b");
}

TEST(VoiceChoice, IsAnotherRegionsWhereNoneIsNearer) {
    EXPECT_EQ(chosen({voice("a", "de"), voice("b", "pt-BR")}, "pt_PT.UTF-8"), "b");
    EXPECT_EQ(chosen({voice("a", "de"), voice("b", "en-GB")}, "en_AU.UTF-8"), "b");
}

TEST(VoiceChoice, IsTheFirstWhereTheLanguageHasNone) {
    EXPECT_EQ(chosen({voice("a", "de"), voice("b", "pt-BR")}, "ja_JP.UTF-8"), "a");
}

} // namespace
} // namespace zqm::platform
