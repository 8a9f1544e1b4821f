// What the class tells about voices, and the voice objects, beside what the platform answers.

#include "tests/speech/synthesizer_host.h"

#include <functional>
#include <limits>
#include <objc/runtime.h>

namespace {

using zqm::host::Array;
using zqm::host::Dictionary;
using zqm::host::HostException;
using zqm::host::Object;
using zqm::host::Value;

constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";

id answer = nil;

id answerInstead(id, SEL) {
    return answer;
}

BOOL yes(id, SEL) {
    return YES;
}

id raiseInstead(id, SEL) {
    [NSException raise:@"FromThePlatform" format:@"on purpose"];
    return nil;
}

// In place of a class method of the platform's class.
template <typename Function>
void replaceClassMethod(SEL selector, Function* function) {
    Method method = class_getClassMethod([NSSpeechSynthesizer class], selector);
    ASSERT_NE(method, nullptr);
    method_setImplementation(method, reinterpret_cast<IMP>(reinterpret_cast<void*>(function)));
}

class Voices : public SynthesizerTest {
public:
    template <typename... Arguments>
    Value ask(const char* method, Arguments... arguments) {
        return host->callShared(kSynthesizer, method, arguments...);
    }
    void expectOutOfBounds(std::int64_t index) {
        try {
            ask("availableVoice", index);
            ADD_FAILURE() << "nothing raised for " << index;
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), "OutOfBoundsException");
            EXPECT_EQ(exception.all().size(), 1U);
            EXPECT_NE(exception.message().find("index"), std::string::npos) << exception.message();
            EXPECT_NE(exception.message().find("availableVoice"), std::string::npos) << exception.message();
        }
    }
    static void expectException(const std::string& className, const std::function<void()>& body) {
        try {
            body();
            ADD_FAILURE() << "nothing raised";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), className);
            EXPECT_EQ(exception.all().size(), 1U);
        }
    }
    Object attributes(NSDictionary* dictionary) {
        answer = dictionary;
        replaceClassMethod(@selector(attributesForVoice:), answerInstead);
        return ask("attributesForVoice", "any").asObject();
    }
};

TEST_F(Voices, AreListedInThePlatformsOrder) {
    NSArray* const voices = [NSSpeechSynthesizer availableVoices];
    ASSERT_GT([voices count], 1U);
    EXPECT_EQ(ask("availableVoicesCount").asInteger(), static_cast<std::int64_t>([voices count]));
    const Array list(ask("availableVoices").asObject());
    EXPECT_EQ(list.elementType(), zqm::host::ElementType::String);
    ASSERT_EQ(list.size(), [voices count]);
    for (NSUInteger index = 0; index < [voices count]; ++index) {
        const std::string voice = [[voices objectAtIndex:index] UTF8String];
        EXPECT_EQ(list.at(index).asText(), voice);
        EXPECT_EQ(ask("availableVoice", static_cast<std::int64_t>(index)).asText(), voice);
    }
    EXPECT_EQ(ask("defaultVoice").asText(), [[NSSpeechSynthesizer defaultVoice] UTF8String]);
}

TEST_F(Voices, OutOfRangeRaise) {
    const std::int64_t count = ask("availableVoicesCount").asInteger();
    const auto before = host->ledger();
    for (const std::int64_t index :
         {std::int64_t{-1}, count, count + 1, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()}) {
        expectOutOfBounds(index);
    }
    EXPECT_EQ(host->ledger(), before);
}

TEST_F(Voices, OfASystemWithoutAnyAreAnEmptyArray) {
    for (const bool answersNil : {false, true}) {
        zqm::support::inFreshProcess([&] {
            answer = answersNil ? nil : [NSArray array];
            replaceClassMethod(@selector(availableVoices), answerInstead);
            EXPECT_EQ(ask("availableVoicesCount").asInteger(), 0);
            const Array list(ask("availableVoices").asObject());
            EXPECT_FALSE(list.isNull());
            EXPECT_EQ(list.size(), 0U);
            if (answersNil) {
                EXPECT_TRUE(ask("availableVoice", 0).isNull());
            } else {
                expectOutOfBounds(0);
            }
        });
    }
}

TEST_F(Voices, NeedAHostThatCanMakeArrays) {
    zqm::support::inFreshProcess([&] {
        host.refuse("RuntimeArrayCreateSingleDimBoundedArray");
        EXPECT_TRUE(ask("availableVoices").isNull());
    });
}

TEST_F(Voices, NilFromThePlatformIsNil) {
    zqm::support::inFreshProcess([&] {
        answer = nil;
        replaceClassMethod(@selector(defaultVoice), answerInstead);
        EXPECT_TRUE(ask("defaultVoice").isNull());
    });
}

TEST_F(Voices, TellWhetherAnybodySpeaks) {
    zqm::support::inFreshProcess([&] {
        EXPECT_EQ(ask("isAnyApplicationSpeaking").asBool(), [NSSpeechSynthesizer isAnyApplicationSpeaking]);
        replaceClassMethod(@selector(isAnyApplicationSpeaking), yes);
        EXPECT_TRUE(ask("isAnyApplicationSpeaking").asBool());
    });
}

TEST_F(Voices, UnknownToThePlatformMakeNoObject) {
    const auto before = host->ledger();
    EXPECT_TRUE(ask("attributesForVoice", "no such voice").isNull());
    EXPECT_TRUE(ask("attributesForVoice", nullptr).isNull());
    EXPECT_EQ(host->ledger(), before);
}

TEST_F(Voices, NeedAHostThatCanMakeObjects) {
    zqm::support::inFreshProcess([&] {
        NSDictionary* const dictionary = [NSDictionary dictionary];
        const NSUInteger count = [dictionary retainCount];
        host.refuse("PluginNewInstance");
        EXPECT_TRUE(attributes(dictionary).isNull());
        EXPECT_EQ([dictionary retainCount], count);
    });
}

TEST_F(Voices, RaiseWhatThePlatformRaises) {
    struct Method {
        const char* name;
        SEL message;
        std::function<Value(Voices&)> use;
    };
    const std::vector<Method> methods = {
        {"isAnyApplicationSpeaking", @selector(isAnyApplicationSpeaking),
         [](Voices& v) { return v.ask("isAnyApplicationSpeaking"); }},
        {"availableVoice", @selector(availableVoices), [](Voices& v) { return v.ask("availableVoice", 0); }},
        {"availableVoicesCount", @selector(availableVoices),
         [](Voices& v) { return v.ask("availableVoicesCount"); }},
        {"attributesForVoice", @selector(attributesForVoice:),
         [](Voices& v) { return v.ask("attributesForVoice", "any"); }},
        {"defaultVoice", @selector(defaultVoice), [](Voices& v) { return v.ask("defaultVoice"); }},
        {"availableVoices", @selector(availableVoices), [](Voices& v) { return v.ask("availableVoices"); }},
    };
    for (const Method& method : methods) {
        SCOPED_TRACE(method.name);
        zqm::support::inFreshProcess([&] {
            const std::string expectedClass = hostExceptionClass();
            replaceClassMethod(method.message, raiseInstead);
            const auto before = host->ledger();
            expectException(expectedClass, [&] { method.use(*this); });
            EXPECT_EQ(host->ledger(), before);
        });
    }
}

// ---- voice objects

struct Reader {
    const char* method;
    const char* key; // the platform's symbol
};

constexpr Reader kReaders[] = {
    {"Name", "NSVoiceName"},         {"Identifier", "NSVoiceIdentifier"},
    {"Gender", "NSVoiceGender"},     {"DemoText", "NSVoiceDemoText"},
    {"Language", "NSVoiceLanguage"}, {"LocaleIdentifier", "NSVoiceLocaleIdentifier"},
};

NSString* keyNamed(PluginHost& host, const char* symbol) {
    return [NSString stringWithUTF8String:host->callShared("NSVoiceZQM", symbol).asText().c_str()];
}

TEST_F(Voices, TellEachAttributeByItsKey) {
    zqm::support::inFreshProcess([&] {
        NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
        for (const Reader& reader : kReaders) {
            [dictionary setObject:[NSString stringWithFormat:@"the %s", reader.method]
                           forKey:keyNamed(host, reader.key)];
        }
        [dictionary setObject:[NSNumber numberWithInt:-35] forKey:keyNamed(host, "NSVoiceAge")];
        Object voice = attributes(dictionary);
        for (const Reader& reader : kReaders) {
            EXPECT_EQ(voice.call(reader.method).asText(), std::string("the ") + reader.method);
        }
        EXPECT_EQ(voice.call("Age").asInteger(), -35);
    });
}

TEST_F(Voices, WithoutAnAttributeAnswerNothing) {
    zqm::support::inFreshProcess([&] {
        Object empty = attributes([NSDictionary dictionary]);
        Object unfilled = host->create("NSVoiceZQM");
        for (Object* voice : {&empty, &unfilled}) {
            for (const Reader& reader : kReaders) {
                EXPECT_TRUE(voice->call(reader.method).isNull()) << reader.method;
            }
            EXPECT_EQ(voice->call("Age").asInteger(), 0);
        }
        EXPECT_EQ(Dictionary(empty.call("Properties").asObject()).count(), 0U);
        EXPECT_TRUE(unfilled.call("Properties").isNull());
    });
}

TEST_F(Voices, RaiseWhereTheAgeIsNoNumber) {
    zqm::support::inFreshProcess([&] {
        const std::string expectedClass = hostExceptionClass();
        Object voice = attributes([NSDictionary dictionaryWithObject:[NSArray array]
                                                              forKey:keyNamed(host, "NSVoiceAge")]);
        expectException(expectedClass, [&] { voice.call("Age"); });
    });
}

TEST_F(Voices, GiveANewDictionaryEachTime) {
    const std::string voice = ask("defaultVoice").asText();
    Object object = ask("attributesForVoice", voice).asObject();
    Dictionary first(object.call("Properties").asObject());
    const std::string key = host->callShared("NSVoiceZQM", "NSVoiceIdentifier").asText();
    EXPECT_EQ(first.value(key).asText(), voice);
    first.setValue(key, "changed");
    const Dictionary second(object.call("Properties").asObject());
    EXPECT_EQ(second.value(key).asText(), voice);
    EXPECT_EQ(object.call("Identifier").asText(), voice);
}

TEST_F(Voices, OwnTheirAttributesOnce) {
    zqm::support::inFreshProcess([&] {
        NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
        const NSUInteger count = [dictionary retainCount];
        Object voice = attributes(dictionary);
        EXPECT_EQ([dictionary retainCount], count + 1);
        voice.reset();
        EXPECT_EQ([dictionary retainCount], count);
    });
}

TEST_F(Voices, CannotBeConstructedByHostCode) {
    EXPECT_THROW(host->construct("NSVoiceZQM"), zqm::host::CallError);
}

} // namespace
