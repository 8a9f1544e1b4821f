// From the platform's recognition of a command to the host program's handler.

#include "plugin/platform_guard.h"
#include "tests/speech/recognizer_host.h"
#include "tests/support/log_lines.h"

#include <csignal>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Arguments;
using zqm::host::Object;

constexpr const char* kEvent = "DidRecognizeCommand";

using RecognizerEvents = RecognizerTest;

TEST_F(RecognizerEvents, CarryTheCommand) {
    Object object = newRecognizer();
    MyNSSpeechRecognizerZQM* recognizer = platformObjectOf(object);
    std::vector<std::string> heard;
    object.on(kEvent, [&](const Arguments& a) {
        EXPECT_EQ(a.size(), 1U);
        EXPECT_EQ(a.sender(), object);
        heard.push_back(a[0].asText());
        EXPECT_EQ(a[0].asString().encoding(), zqm::host::encoding::kUtf8);
    });
    const auto before = host->ledger();
    recognize(recognizer, @"open the door");
    recognize(recognizer, @"Gr\u00FC\u00DF \U0001F600");
    recognize(recognizer, @"open the door");
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(heard, ElementsAre("open the door", "Gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80", "open the door"));
}

TEST_F(RecognizerEvents, CarryANullStringForNoCommandAndForAnEmptyOne) {
    Object object = newRecognizer();
    int nulls = 0;
    object.on(kEvent, [&](const Arguments& a) { nulls += a[0].isNull(); });
    recognize(platformObjectOf(object), nil);
    EXPECT_EQ(nulls, 1);
    recognize(platformObjectOf(object), @"");
    EXPECT_EQ(nulls, 2);
}

// The object that the message names is no matter: a recognizer is its own delegate.
TEST_F(RecognizerEvents, AreThoseOfTheObjectThatIsTheDelegate) {
    Object object = newRecognizer();
    Object other = newRecognizer();
    object.on(kEvent, [](const Arguments&) {});
    other.on(kEvent, [](const Arguments&) { ADD_FAILURE(); });
    [platformObjectOf(object) speechRecognizer:platformObjectOf(other) didRecognizeCommand:@"one"];
    [platformObjectOf(object) speechRecognizer:nil didRecognizeCommand:@"one"];
    EXPECT_EQ(object.timesRaised(kEvent), 2U);
}

TEST_F(RecognizerEvents, AreNothingWithoutAHandler) {
    Object object = newRecognizer();
    const auto before = host->ledger();
    recognize(platformObjectOf(object), @"one");
    EXPECT_EQ(object.timesRaised(kEvent), 0U);
    EXPECT_EQ(host->entryPoints().calls("REALLockObject"), 0U);
    object.on(kEvent, [](const Arguments&) {});
    recognize(platformObjectOf(object), @"one");
    object.off(kEvent);
    recognize(platformObjectOf(object), @"one");
    EXPECT_EQ(object.timesRaised(kEvent), 1U);
    EXPECT_EQ(host->ledger(), before);
}

TEST_F(RecognizerEvents, AreAlwaysAskedFor) {
    const Object object = newRecognizer();
    EXPECT_TRUE([platformObjectOf(object) respondsToSelector:@selector(speechRecognizer:
                                                                    didRecognizeCommand:)]);
}

TEST_F(RecognizerEvents, AskTheHostForNothingWithoutATarget) {
    Object object = newRecognizer();
    object.call("Destructor");
    recognize(platformObjectOf(object), @"one");
    EXPECT_EQ(host->entryPoints().lookups("GetEventInstance"), 0U);
}

TEST_F(RecognizerEvents, EndSilentlyWithoutTheHostsHandlerLookUp) {
    host->entryPoints().refuse("GetEventInstance");
    Object object = newRecognizer();
    object.on(kEvent, [](const Arguments&) { ADD_FAILURE(); });
    recognize(platformObjectOf(object), @"one");
    EXPECT_EQ(host->entryPoints().calls("REALLockObject"), 0U);
}

TEST_F(RecognizerEvents, UnlockNothingWhereTheHostCannotLock) {
    host->entryPoints().refuse("REALLockObject");
    Object object = newRecognizer();
    object.on(kEvent, [](const Arguments&) {});
    const auto before = host->ledger();
    recognize(platformObjectOf(object), @"one");
    EXPECT_EQ(object.timesRaised(kEvent), 1U);
    EXPECT_EQ(host->ledger(), before);
}

// ---- the token of the event, by the revision that was announced

class TokensOfHosts : public RecognizerTest, public testing::WithParamInterface<double> {
protected:
    TokensOfHosts() : RecognizerTest(GetParam()) {}
};

std::uint64_t askedToken = 0;

TEST_P(TokensOfHosts, ReachTheirHandlers) {
    Object object = newRecognizer();
    recognize(platformObjectOf(object), @"one");
    object.on(kEvent, [](const Arguments& a) { EXPECT_EQ(a[0].asText(), "two"); });
    recognize(platformObjectOf(object), @"two");
    EXPECT_EQ(object.timesRaised(kEvent), 1U);
}

TEST_P(TokensOfHosts, AreWordOneOfTheRecordThatHoldsThem) {
    zqm::support::inFreshProcess([this] {
        PluginHost::replace(
            "GetEventInstance", +[](REALobject, std::uint64_t token) -> void* {
                askedToken = token;
                return nullptr;
            });
        const Object object = newRecognizer();
        EventRecord ofTheHost{.declaration = "not looked at", .hostToken = 4712};
        NSSpeechRecognizerClass.events[0].hostToken =
            CurrentREALControlVersion == 9 ? reinterpret_cast<std::uint64_t>(&ofTheHost) : 4711;
        recognize(platformObjectOf(object), @"one");
        EXPECT_EQ(askedToken, CurrentREALControlVersion == 9 ? 4712U : 4711U);
    });
}

INSTANTIATE_TEST_SUITE_P(Hosts, TokensOfHosts,
                         testing::Values(2011.0, 2012.0, 2013.0, 2013.03, 2013.04,
                                         zqm::host::kDefaultVersion),
                         [](const auto& row) {
                             return "version" + std::to_string(static_cast<int>(row.param * 1000));
                         });

TEST(RecognizerEvent, ComesByTheIndirectTokenToTheOldestHostsAlone) {
    zqm::support::inFreshProcess([] {
        PluginHost oldest(2011.0);
        oldest.start();
        EXPECT_EQ(CurrentREALControlVersion, 9U);
    });
    zqm::support::inFreshProcess([] {
        PluginHost next(2012.0);
        next.start();
        EXPECT_EQ(CurrentREALControlVersion, 10U);
    });
}

class OldestHost : public RecognizerTest {
protected:
    OldestHost() : RecognizerTest(2011.0) {}
};

TEST_F(OldestHost, HearsNothingOfAClassThatWasNotRegistered) {
    zqm::support::inFreshProcess([this] {
        Object object = newRecognizer();
        object.on(kEvent, [](const Arguments&) { ADD_FAILURE(); });
        NSSpeechRecognizerClass.events[0].hostToken = 0;
        recognize(platformObjectOf(object), @"one");
        host->clearReports(); // the token 0 that the host was asked for
    });
}

// ---- the steps of one delivery, any of which may go wrong

std::vector<std::string> steps;
std::string raisingStep;
std::string throwingStep;

void step(const char* name) {
    steps.emplace_back(name);
    if (raisingStep == name) {
        [NSException raise:@"InDelivery" format:@"%s on purpose", name];
    }
    if (throwingStep == name) {
        throw std::runtime_error(name);
    }
}

template <typename Handle>
void (*original(const char* name))(Handle) {
    return reinterpret_cast<void (*)(Handle)>(zqm::host::Runtime::resolver()(name));
}

void handle(REALobject /*sender*/, REALstring /*command*/) {
    step("handler");
}

class Delivery : public RecognizerTest {
protected:
    // From here on each step of a delivery is noted.
    void noteSteps() {
        PluginHost::replace(
            "GetEventInstance", +[](REALobject, std::uint64_t) {
                step("ask");
                return reinterpret_cast<void*>(handle);
            });
        PluginHost::replace(
            "REALLockObject", +[](REALobject object) {
                step("lock object");
                original<REALobject>("REALLockObject")(object);
            });
        PluginHost::replace(
            "REALUnlockObject", +[](REALobject object) {
                step("unlock object");
                original<REALobject>("REALUnlockObject")(object);
            });
        PluginHost::replace(
            "REALUnlockString", +[](REALstring string) {
                original<REALstring>("REALUnlockString")(string);
                step("unlock string");
            });
        forgetEntryPoints();
        steps.clear();
    }
};

TEST_F(Delivery, LocksTheObjectFirstAndUnlocksItLast) {
    zqm::support::inFreshProcess([this] {
        const Object object = newRecognizer();
        const auto before = host->ledger();
        noteSteps();
        recognize(platformObjectOf(object), @"one");
        EXPECT_THAT(steps, ElementsAre("ask", "lock object", "handler", "unlock string", "unlock object"));
        steps.clear();
        recognize(platformObjectOf(object), nil);
        EXPECT_THAT(steps, ElementsAre("ask", "lock object", "handler", "unlock object"));
        EXPECT_EQ(host->ledger(), before);
    });
}

struct FailingStep {
    const char* name;
    std::vector<std::string> done;
};

const FailingStep kFailingSteps[] = {
    {"ask", {"ask"}},
    {"lock object", {"ask", "lock object"}},
    {"handler", {"ask", "lock object", "handler", "unlock string", "unlock object"}},
    {"unlock string", {"ask", "lock object", "handler", "unlock string", "unlock object"}},
};

class FailingDelivery : public Delivery, public testing::WithParamInterface<FailingStep> {};

TEST_P(FailingDelivery, LogsAPlatformExceptionAndDropsIt) {
    zqm::support::inFreshProcess([this] {
        const Object object = newRecognizer();
        const auto before = host->ledger();
        noteSteps();
        raisingStep = GetParam().name;
        const auto log = zqm::support::logged([&] { recognize(platformObjectOf(object), @"one"); });
        ASSERT_EQ(log.size(), 1U);
        EXPECT_THAT(log.front(), testing::HasSubstr(std::string(GetParam().name) + " on purpose"));
        EXPECT_EQ(steps, GetParam().done);
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->takeRaised(), IsEmpty());
    });
}

TEST_P(FailingDelivery, PassesANativeExceptionOnWithTheObjectUnlocked) {
    zqm::support::inFreshProcess([this] {
        const Object object = newRecognizer();
        const auto before = host->ledger();
        noteSteps();
        throwingStep = GetParam().name;
        const auto log = zqm::support::logged(
            [&] { EXPECT_THROW(recognize(platformObjectOf(object), @"one"), std::runtime_error); });
        EXPECT_THAT(log, IsEmpty());
        EXPECT_EQ(steps, GetParam().done);
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->takeRaised(), IsEmpty());
    });
}

INSTANTIATE_TEST_SUITE_P(Steps, FailingDelivery, testing::ValuesIn(kFailingSteps), [](const auto& row) {
    std::string name = row.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

TEST_F(Delivery, LogsTheExceptionOfACommandThatIsNoString) {
    zqm::support::inFreshProcess([this] {
        const Object object = newRecognizer();
        const auto before = host->ledger();
        noteSteps();
        id number = [NSNumber numberWithInt:25];
        const auto log = zqm::support::logged([&] { recognize(platformObjectOf(object), number); });
        EXPECT_EQ(log.size(), 1U);
        EXPECT_THAT(steps, ElementsAre("ask", "lock object", "unlock object"));
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->takeRaised(), IsEmpty());
    });
}

// Nothing could go on safely: whether the object still lives is not known.
TEST_F(Delivery, EndsTheProcessWhenTheObjectCannotBeUnlocked) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const Object object = newRecognizer();
    for (std::string* failure : {&raisingStep, &throwingStep}) {
        EXPECT_EXIT(
            {
                noteSteps();
                *failure = "unlock object";
                runUnderPlatformGuard([&] { recognize(platformObjectOf(object), @"one"); });
            },
            testing::KilledBySignal(SIGABRT), "");
    }
}

// ---- handlers that change what they belong to

TEST_F(RecognizerEvents, KeepTheObjectAliveForAHandlerThatDropsIt) {
    Object object = newRecognizer();
    MyNSSpeechRecognizerZQM* recognizer = [platformObjectOf(object) retain];
    bool handled = false;
    object.on(kEvent, [&](const Arguments& a) {
        object.reset();
        EXPECT_EQ(platformObjectOf(a.sender()), recognizer);
        handled = true;
    });
    recognize(recognizer, @"one");
    EXPECT_TRUE(handled);
    // The last lock went with the delivery, and with it the object.
    EXPECT_EQ([recognizer retainCount], 1U);
    EXPECT_EQ([recognizer delegate], nil);
    [recognizer release];
}

TEST_F(RecognizerEvents, UnlockTheObjectThatTheyLockedEvenIfTheHandlerClearsTheTarget) {
    Object object = newRecognizer();
    const auto before = host->ledger();
    object.on(kEvent, [&](const Arguments&) { object.call("Destructor"); });
    recognize(platformObjectOf(object), @"one");
    EXPECT_EQ(host->ledger().objects, before.objects);
    EXPECT_EQ(host->ledger().strings, before.strings);
}

TEST_F(RecognizerEvents, MayChangeTheCommandsInTheirHandler) {
    Object object = newRecognizer();
    object.on(kEvent, [&](const Arguments&) {
        object.call("setCommands", host->array(zqm::host::ElementType::String, {"next"}));
    });
    recognize(platformObjectOf(object), @"one");
    EXPECT_STREQ([[[platformObjectOf(object) commands] lastObject] UTF8String], "next");
}

} // namespace
