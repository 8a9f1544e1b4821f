// What a voice's attributes say of its speaker, of whom espeak-ng's own voices tell less.

#include "platform/voice_attributes.h"

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

namespace zqm::platform {
namespace {

NSDictionary* attributesOf(const char* gender, int age) {
    return platform::attributesOf(
        {.identifier = "test/a", .name = "A", .language = "en-US", .gender = gender, .age = age});
}

TEST(VoiceDescription, HasTheGender) {
    EXPECT_TRUE([[attributesOf("male", 0) objectForKey:NSVoiceGender] isEqual:NSVoiceGenderMale]);
    EXPECT_TRUE([[attributesOf("female", 0) objectForKey:NSVoiceGender] isEqual:NSVoiceGenderFemale]);
    EXPECT_TRUE([[attributesOf("neuter", 0) objectForKey:NSVoiceGender] isEqual:NSVoiceGenderNeuter]);
}

TEST(VoiceDescription, HasTheAgeOfWhomItIsKnown) {
    EXPECT_TRUE([[attributesOf("female", 33) objectForKey:NSVoiceAge] isEqual:[NSNumber numberWithInt:33]]);
    EXPECT_EQ([attributesOf("female", 0) objectForKey:NSVoiceAge], nil);
}

} // namespace
} // namespace zqm::platform
