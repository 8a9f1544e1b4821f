// The library's exported names, pinned: what its headers declare, and nothing else.

#include "tests/support/process.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

namespace {

const std::set<std::string> kExpected{
    "CFDictionaryCreateMutable",
    "CFDictionaryGetCount",
    "CFDictionaryGetValue",
    "CFDictionaryRemoveValue",
    "CFDictionarySetValue",
    "CFRelease",
    "CFRetain",
    "CFRunLoopRunInMode",
    "CFStringCreateWithBytes",
    "CFStringCreateWithCharacters",
    "CFStringGetBytes",
    "CFStringGetCString",
    "CFStringGetCharacters",
    "CFStringGetLength",
    "CFURLCreateWithString",
    "NSVoiceAge",
    "NSVoiceDemoText",
    "NSVoiceGender",
    "NSVoiceGenderFemale",
    "NSVoiceGenderMale",
    "NSVoiceGenderNeuter",
    "NSVoiceIdentifier",
    "NSVoiceIndividuallySpokenCharacters",
    "NSVoiceLanguage",
    "NSVoiceLocaleIdentifier",
    "NSVoiceName",
    "NSVoiceSupportedCharacters",
    "ZQMPlatformEventDescriptor",
    "__objc_class_name_NSSpeechSynthesizer",
    "kCFAllocatorDefault",
    "kCFRunLoopDefaultMode",
    "kCFTypeDictionaryKeyCallBacks",
    "kCFTypeDictionaryValueCallBacks",
};

TEST(Exports, AreThoseOfTheHeaders) {
    const auto result = zqm::support::runProcess("nm", {"-D", "--defined-only", ZQM_PLATFORM_LIBRARY});
    ASSERT_TRUE(result.succeeded()) << result.errors;
    std::set<std::string> names;
    std::istringstream lines(result.output);
    for (std::string address, kind, name; lines >> address >> kind >> name;) {
        names.insert(name);
    }
    EXPECT_EQ(kExpected, names);
}

TEST(Exports, TheLibraryIsNeverUnloadedAndNeedsNoSpeechLibrary) {
    const auto result = zqm::support::runProcess("readelf", {"-d", ZQM_PLATFORM_LIBRARY});
    ASSERT_TRUE(result.succeeded()) << result.errors;
    EXPECT_NE(std::string::npos, result.output.find("NODELETE"));
    for (const char* const library : {"espeak", "pulse", "sndfile"}) {
        EXPECT_EQ(std::string::npos, result.output.find(library)) << library;
    }
}

} // namespace
