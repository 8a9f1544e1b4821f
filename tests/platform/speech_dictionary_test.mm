// Dictionaries of pronunciations, as programs give them.

#include "tests/platform/speech_fixture.h"
#include "tests/support/process_table.h"
#include "tests/support/sound_file.h"

#include <csignal>
#include <string>
#include <vector>

namespace {

using namespace zqm::platform::test;

NSString* const kLong = @"lAAlAAlAAlAAlAAlAAlAAlAAlAAlAA";

NSDictionary* entry(id spelling, id phonemes) {
    return [NSDictionary dictionaryWithObjectsAndKeys:spelling, NSSpeechDictionaryEntrySpelling, phonemes,
                                                      NSSpeechDictionaryEntryPhonemes, nil];
}

// As programs may leave it: with a value in the place of one of its own, or without it (nil).
NSDictionary* dictionaryBut(NSString* key, id value) {
    NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
    [dictionary setObject:@"en_US" forKey:NSSpeechDictionaryLocaleIdentifier];
    [dictionary setObject:@"2024-02-29 23:59:00 -0100" forKey:NSSpeechDictionaryModificationDate];
    [dictionary setObject:[NSArray arrayWithObject:entry(@"about", @"sIYkwAXl")]
                   forKey:NSSpeechDictionaryPronunciations];
    [dictionary setObject:[NSArray arrayWithObject:entry(@"Dr", @"dAAktAXr")]
                   forKey:NSSpeechDictionaryAbbreviations];
    if (value != nil) {
        [dictionary setObject:value forKey:key];
    } else if (key != nil) {
        [dictionary removeObjectForKey:key];
    }
    return dictionary;
}

NSDictionary* only(NSString* key, id value) {
    return [NSDictionary dictionaryWithObject:value forKey:key];
}

// What is logged meanwhile.
std::string logOf(NSSpeechSynthesizer* synthesizer, NSDictionary* dictionary) {
    testing::internal::CaptureStderr();
    [synthesizer addSpeechDictionary:dictionary];
    return testing::internal::GetCapturedStderr();
}

class SpeechDictionary : public Speech {
protected:
    double secondsOf(const std::string& text) {
        EXPECT_TRUE(speaker_.say(text, path("a.wav")) && speaker_.runToEnd(++spoken_));
        return zqm::support::SoundFile(path("a.wav")).seconds();
    }

    // Since it was asked last.
    // NOLINTNEXTLINE(readability-make-member-function-const): asking changes the answer
    int errorCount() {
        NSDictionary* const errors = [speaker_.synthesizer objectForProperty:NSSpeechErrorsProperty
                                                                       error:nullptr];
        return [[errors objectForKey:NSSpeechErrorCount] intValue];
    }

    Speaker speaker_{@"gmw/en-US"};
    std::size_t spoken_ = 0;
};

TEST_F(SpeechDictionary, IsTakenInEveryForm) {
    NSArray* const entries = [NSArray arrayWithObject:entry(@"SQL", @"sIYkwAXl")];
    for (NSDictionary* const dictionary : std::vector<NSDictionary*>{
             dictionaryBut(nil, nil),
             dictionaryBut(NSSpeechDictionaryLocaleIdentifier, nil),
             dictionaryBut(NSSpeechDictionaryLocaleIdentifier, @"de_AT"),
             dictionaryBut(NSSpeechDictionaryModificationDate, nil),
             dictionaryBut(NSSpeechDictionaryModificationDate, @"1999-12-31 23:59:60 +1400"),
             dictionaryBut(NSSpeechDictionaryPronunciations, nil),
             dictionaryBut(NSSpeechDictionaryPronunciations, [NSArray array]),
             dictionaryBut(NSSpeechDictionaryAbbreviations, nil),
             dictionaryBut(@"other", @"value"),
             only(NSSpeechDictionaryPronunciations, entries),
             only(NSSpeechDictionaryAbbreviations, entries),
         }) {
        EXPECT_EQ("", logOf(speaker_.synthesizer, dictionary)) << [[dictionary description] UTF8String];
    }
}

TEST_F(SpeechDictionary, IsRefusedWithAReasonWhenItIsMalformed) {
    NSNumber* const one = [NSNumber numberWithInt:1];
    const auto entries = [](id each) { return [NSArray arrayWithObjects:entry(@"a", @"AX"), each, nil]; };
    struct Case {
        id dictionary;
        const char* reason;
    };
    std::vector<Case> cases{
        {nil, "there is none"},
        {@"text", "it is no dictionary"},
        {[NSDictionary dictionary], "it has neither pronunciations nor abbreviations"},
        {dictionaryBut(NSSpeechDictionaryLocaleIdentifier, one), "its locale is no text"},
        {dictionaryBut(NSSpeechDictionaryPronunciations, @"text"),
         "its DictionaryPronunciations is no array"},
        {dictionaryBut(NSSpeechDictionaryAbbreviations, one), "its DictionaryAbbreviations is no array"},
        {dictionaryBut(NSSpeechDictionaryPronunciations, entries(@"text")),
         "entry 1 of its DictionaryPronunciations is no dictionary"},
        {dictionaryBut(NSSpeechDictionaryPronunciations, entries([NSDictionary dictionary])),
         "entry 1 of its DictionaryPronunciations has no spelling"},
        {dictionaryBut(NSSpeechDictionaryPronunciations, entries(entry(@"", @"AX"))),
         "entry 1 of its DictionaryPronunciations has no spelling"},
        {dictionaryBut(NSSpeechDictionaryAbbreviations, entries(entry(@"b", one))),
         "entry 1 of its DictionaryAbbreviations has no phonemes"},
        {dictionaryBut(NSSpeechDictionaryAbbreviations, entries(entry(@"b", @""))),
         "entry 1 of its DictionaryAbbreviations has no phonemes"},
    };
    for (id const date :
         {id(one), id([NSDate date]), id(@""), id(@"2024"), id(@"2024-02-30 00:00:00 +0000"),
          id(@"2023-02-29 00:00:00 +0000"), id(@"2024-13-01 00:00:00 +0000"),
          id(@"2024-01-01 24:00:00 +0000"), id(@"2024-01-01 00:60:00 +0000"),
          id(@"2024-01-01 00:00:61 +0000"), id(@"2024-01-01 00:00:00 +0060"), id(@"2024-01-01 00:00:00 0000"),
          id(@"2024-01-01T00:00:00 +0000"), id(@"2024-01-01 00:00:00 +00000"),
          id(@" 2024-01-01 00:00:00 +0000"), id(@"2024-01-01 -1:00:00 +0000")}) {
        cases.push_back({dictionaryBut(NSSpeechDictionaryModificationDate, date), "its date"});
    }
    for (const Case& each : cases) {
        const std::string log = logOf(speaker_.synthesizer, each.dictionary);
        EXPECT_NE(std::string::npos, log.find(std::string("Speech dictionary refused: ") + each.reason))
            << [[each.dictionary description] UTF8String] << ": " << log;
    }
}

TEST_F(SpeechDictionary, SaysHowAWordIsSpoken) {
    const double usual = secondsOf("about");
    NSArray* const longer = [NSArray arrayWithObject:entry(@"about", kLong)];
    [speaker_.synthesizer addSpeechDictionary:dictionaryBut(NSSpeechDictionaryPronunciations, longer)];
    EXPECT_GT(secondsOf("about"), 1.7 * usual);
}

TEST_F(SpeechDictionary, StaysWhenAnotherIsRefusedOrAddedAndWithANewEngine) {
    const double usual = secondsOf("about");
    NSArray* const longer = [NSArray arrayWithObject:entry(@"about", kLong)];
    [speaker_.synthesizer addSpeechDictionary:dictionaryBut(NSSpeechDictionaryPronunciations, longer)];
    EXPECT_NE("", logOf(speaker_.synthesizer, dictionaryBut(NSSpeechDictionaryModificationDate, @"")));
    EXPECT_GT(secondsOf("about"), 1.7 * usual);
    NSArray* const other = [NSArray arrayWithObject:entry(@"dog", kLong)];
    const double dog = secondsOf("dog");
    [speaker_.synthesizer addSpeechDictionary:dictionaryBut(NSSpeechDictionaryPronunciations, other)];
    for (int round = 0; round < 2; ++round) {
        EXPECT_GT(secondsOf("about"), 1.7 * usual);
        EXPECT_GT(secondsOf("dog"), 1.7 * dog);
        for (const pid_t engine : zqm::support::childrenOfThisProcess()) {
            ::kill(engine, SIGKILL);
        }
    }
}

TEST_F(SpeechDictionary, MayComeBeforeTheFirstText) {
    const double usual = secondsOf("about");
    Speaker fresh(@"gmw/en-US");
    NSArray* const longer = [NSArray arrayWithObject:entry(@"about", kLong)];
    [fresh.synthesizer addSpeechDictionary:dictionaryBut(NSSpeechDictionaryPronunciations, longer)];
    ASSERT_TRUE(fresh.say("about", (folder_ / "b.wav").string()) && fresh.runToEnd());
    EXPECT_GT(zqm::support::SoundFile(folder_ / "b.wav").seconds(), 1.7 * usual);
    EXPECT_NEAR(secondsOf("about"), usual, 0.05) << "it is of the one synthesizer";
}

// A hundred take a sanitized engine the ten seconds that it has for an answer.
#ifdef __SANITIZE_ADDRESS__
constexpr int kManyDictionaries = 20;
#else
constexpr int kManyDictionaries = 1000;
#endif

TEST_F(SpeechDictionary, KeepsNoEngineBusyWhenManyAreAdded) {
    secondsOf("about");
    const std::vector<pid_t> engines = zqm::support::childrenOfThisProcess();
    NSMutableArray* const entries = [NSMutableArray array];
    for (int word = 0; word < 20; ++word) {
        [entries addObject:entry(@"about", kLong)];
    }
    for (int count = 0; count < kManyDictionaries; ++count) {
        [speaker_.synthesizer addSpeechDictionary:only(NSSpeechDictionaryPronunciations, entries)];
    }
    secondsOf("about");
    EXPECT_EQ(zqm::support::childrenOfThisProcess(), engines)
        << "it was given up as one that does not answer";
}

TEST_F(SpeechDictionary, IsNoErrorBeforeTheFirstTextAndWithAnotherVoice) {
    NSArray* const right = [NSArray arrayWithObject:entry(@"about", kLong)];
    [speaker_.synthesizer addSpeechDictionary:dictionaryBut(NSSpeechDictionaryPronunciations, right)];
    secondsOf("about");
    EXPECT_EQ(errorCount(), 0);
    [speaker_.synthesizer setVoice:@"gmw/de"];
    [speaker_.synthesizer addSpeechDictionary:dictionaryBut(NSSpeechDictionaryLocaleIdentifier, @"de_DE")];
    secondsOf("about");
    EXPECT_EQ(errorCount(), 0);
    NSArray* const wrong = [NSArray arrayWithObject:entry(@"about", @"444")];
    [speaker_.synthesizer addSpeechDictionary:dictionaryBut(NSSpeechDictionaryPronunciations, wrong)];
    secondsOf("about");
    EXPECT_EQ(errorCount(), 1);
}

} // namespace
