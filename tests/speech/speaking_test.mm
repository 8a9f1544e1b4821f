// What each speaking member sends to the platform.

#include "tests/speech/synthesizer_host.h"

namespace {

using zqm::host::Dictionary;
using zqm::host::ElementType;
using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::String;

NSString* sentText = nil;
NSURL* sentURL = nil;
NSUInteger sentBoundary = 99;
NSDictionary* sentDictionary = nil;
NSString* sentVoice = nil;
NSString* answeredText = nil;
BOOL answer = NO;

BOOL startInstead(id self, SEL, NSString* text, NSURL* url) {
    sentText = text;
    keep(sentURL, url);
    EXPECT_EQ([self isSpeaking], NO);
    return answer;
}

void takeBoundary(id, SEL, NSUInteger boundary) {
    sentBoundary = boundary;
}

void takeDictionary(id, SEL, NSDictionary* dictionary) {
    keep(sentDictionary, dictionary);
}

BOOL takeVoice(id, SEL, NSString* voice) {
    keep(sentVoice, voice);
    return answer;
}

NSString* takeText(id, SEL, NSString* text) {
    keep(sentText, text);
    return answeredText;
}

using Speaking = SynthesizerTest;

TEST_F(Speaking, SendsAFolderItemAsItsFileURL) {
    zqm::support::inFreshProcess([&] {
        Object object = newSynthesizer();
        replaceMethod(@selector(startSpeakingString:toURL:), startInstead);
        for (const bool begins : {true, false}) {
            answer = begins ? YES : NO;
            EXPECT_EQ(object.call("startSpeakingString", "text", host->folderItem("/tmp/a b.aiff")).asBool(),
                      begins);
            EXPECT_TRUE([sentText isEqualToString:@"text"]);
            EXPECT_TRUE([sentURL isFileURL]);
            EXPECT_TRUE([[sentURL path] isEqualToString:@"/tmp/a b.aiff"]);
        }
        object.call("startSpeakingString", "text", Object());
        EXPECT_EQ(sentURL, nil);
    });
}

TEST_F(Speaking, SendsBoundariesAsTheyAre) {
    zqm::support::inFreshProcess([&] {
        Object object = newSynthesizer();
        replaceMethod(@selector(pauseSpeakingAtBoundary:), takeBoundary);
        replaceMethod(@selector(stopSpeakingAtBoundary:), takeBoundary);
        for (const char* method : {"pauseSpeakingAtBoundary", "stopSpeakingAtBoundary"}) {
            for (const std::int64_t boundary : {0, 1, 2, 3, -1}) {
                object.call(method, boundary);
                EXPECT_EQ(sentBoundary, static_cast<NSUInteger>(boundary));
            }
        }
    });
}

TEST_F(Speaking, SendsDictionariesConverted) {
    zqm::support::inFreshProcess([&] {
        Object object = newSynthesizer();
        replaceMethod(@selector(addSpeechDictionary:), takeDictionary);
        Dictionary dictionary = host->dictionary();
        dictionary.setValue("key", "value");
        object.call("addSpeechDictionary", dictionary);
        EXPECT_TRUE([[sentDictionary objectForKey:@"key"] isEqual:@"value"]);
        object.call("addSpeechDictionary", Object());
        EXPECT_EQ(sentDictionary, nil);
    });
}

// The platform's arrays take no nil: their exception is the host's, and the platform object hears of nothing.
TEST_F(Speaking, RaisesForADictionaryWhoseListHasANilElement) {
    zqm::support::inFreshProcess([&] {
        const std::string expectedClass = hostExceptionClass();
        Object object = newSynthesizer();
        replaceMethod(@selector(addSpeechDictionary:), takeDictionary);
        NSDictionary* before = [NSDictionary dictionary];
        keep(sentDictionary, before);
        Dictionary dictionary = host->dictionary();
        zqm::host::Array list = host->array(ElementType::Object, {host->dictionary()});
        list.resize(2);
        dictionary.setValue("key", list);
        try {
            object.call("addSpeechDictionary", dictionary);
            ADD_FAILURE() << "nothing raised";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), expectedClass);
        }
        EXPECT_EQ(sentDictionary, before);
    });
}

TEST_F(Speaking, AnswersWhetherTheVoiceWasTaken) {
    zqm::support::inFreshProcess([&] {
        Object object = newSynthesizer();
        replaceMethod(@selector(setVoice:), takeVoice);
        for (const bool taken : {true, false}) {
            answer = taken ? YES : NO;
            EXPECT_EQ(object.call("setVoice", "some voice").asBool(), taken);
            EXPECT_TRUE([sentVoice isEqualToString:@"some voice"]);
        }
        object.call("setVoice", String());
        EXPECT_EQ(sentVoice, nil);
    });
}

TEST_F(Speaking, AnswersPhonemesOrNil) {
    zqm::support::inFreshProcess([&] {
        Object object = newSynthesizer();
        replaceMethod(@selector(phonemesFromText:), takeText);
        answeredText = @"_d1AOg.";
        EXPECT_EQ(object.call("phonemesFromText", "dog").asText(), "_d1AOg.");
        EXPECT_TRUE([sentText isEqualToString:@"dog"]);
        answeredText = nil;
        EXPECT_TRUE(object.call("phonemesFromText", String()).isNull());
        EXPECT_EQ(sentText, nil);
    });
}

} // namespace
