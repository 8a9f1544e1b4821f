// Texts at which libespeak-ng itself crashes, as the command espeak-ng does: the engine ends, the host
// program is told and speaks on. Where a newer library has learnt to say them, they are said.

#include "tests/faults/program.h"
#include "tests/support/scoped_environment.h"

#include <gtest/gtest.h>

namespace zqm::faults {
namespace {

struct CrashingText {
    const char* locale;
    const char* voice; // of that locale
    const char* text;
};

void PrintTo(const CrashingText& text, std::ostream* stream) {
    *stream << text.locale << ": " << text.text;
}

class CrashingTexts : public testing::TestWithParam<CrashingText> {};

TEST_P(CrashingTexts, EndOneSpeechAtMost) {
    Tally tally(std::string("a text that crashes libespeak-ng, ") + GetParam().locale);
    const auto withVoice = [] {
        return std::make_shared<support::ScopedEnvironment>("LC_ALL", std::string(GetParam().locale));
    };
    Program program;
    program.expectWorks();
    {
        const auto locale = withVoice();
        EXPECT_EQ(program.runtime.callShared("NSSpeechSynthesizerZQM", "defaultVoice").asText(),
                  GetParam().voice);
    }
    for (int time = 0; time < 2; ++time) {
        tally.add(program.speak("speech.wav", withVoice, GetParam().text));
        program.expectWorks();
    }
    EXPECT_EQ(tally.of(Seen::Refused), 0);
    program.expectNoEngine();
}

INSTANTIATE_TEST_SUITE_P(
    Voices, CrashingTexts,
    testing::Values(
        CrashingText{"da_DK", "gmq/da", "٣-ङ"},
        CrashingText{"ga_IE", "cel/ga", "x.de妺븅랛샳땴듒쮠놃쵁ऩऴऩधञठतऱप쾽쪺힛겷신퓩캨"},
        CrashingText{
            "si_LK", "inc/si",
            "]rfosd φζβχ&❤️λρασεκθ "
            "לעןךןד्1/"
            "225სძmnzozlոնսнтфячъшдU.S.A.⃝ըճպեօկռ‍�‍डसथफऱश"}),
    [](const auto& text) { return std::string(text.param.locale, 2); });

} // namespace
} // namespace zqm::faults
