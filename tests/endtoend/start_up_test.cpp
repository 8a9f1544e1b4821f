// What the plugin asks its host for, and when.

#include "tests/endtoend/speaking.h"
#include "tests/support/fresh_process.h"
#include "tests/support/sibling_library.h"

#include <functional>
#include <gmock/gmock.h>
#include <map>

namespace zqm::endtoend {
namespace {

using host::Object;
using host::Options;
using host::Runtime;
using host::String;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Matches;

using Names = std::vector<std::string>;

// What the plugin newly asks for or registers, from one step of a host program to the next.
class NewNames {
public:
    explicit NewNames(std::function<Names()> all) : all_(std::move(all)), known_(all_().size()) {}

    Names sinceLast() {
        const Names all = all_();
        Names names(all.begin() + static_cast<std::ptrdiff_t>(known_), all.end());
        known_ = all.size();
        return names;
    }

private:
    std::function<Names()> all_;
    std::size_t known_;
};

// Of the plugin alone: what its sibling asks for when it is loaded is not among them.
NewNames askedNames(Runtime& runtime) {
    return NewNames([&runtime] { return runtime.entryPoints().asked(); });
}
NewNames registeredClasses(Runtime& runtime) {
    return NewNames([&runtime] { return runtime.classNames(); });
}

TEST(StartUp, HasTheSiblingOfThisRunBesideThePlugin) {
    support::inFreshProcess([] {
        Runtime runtime;
        loadPlugin(runtime);
        EXPECT_THAT(runtime.classNames(), Contains(kSynthesizer));
        EXPECT_EQ(support::siblingLibrary().has_value(),
                  Matches(Contains("NSErrorZQM"))(runtime.classNames()));
        expectNoReports(runtime);
    });
}

TEST(StartUp, AsksForThreeNamesOnly) {
    support::inFreshProcess([] {
        Runtime runtime;
        support::loadSibling(runtime);
        NewNames names = askedNames(runtime);
        NewNames classes = registeredClasses(runtime);
        const auto registrations = runtime.entryPoints().calls("PluginRegisterClass");
        runtime.load(ZQM_PLUGIN);
        EXPECT_THAT(names.sinceLast(),
                    ElementsAre("REALGetRBVersion", "RegisterPluginVersion", "PluginRegisterClass"));
        EXPECT_EQ(runtime.entryPoints().calls("PluginRegisterClass"), registrations + 3);
        EXPECT_THAT(classes.sinceLast(),
                    ElementsAre("NSSpeechRecognizerZQM", "NSVoiceZQM", "NSSpeechSynthesizerZQM"));
        expectNoReports(runtime);
    });
}

TEST(StartUp, WithoutRegistrationAsksOncePerClass) {
    support::inFreshProcess([] {
        Runtime runtime;
        support::loadSibling(runtime);
        runtime.entryPoints().refuse("PluginRegisterClass");
        NewNames names = askedNames(runtime);
        NewNames classes = registeredClasses(runtime);
        EXPECT_THROW(runtime.load(ZQM_PLUGIN), host::LoadError);
        EXPECT_THAT(names.sinceLast(),
                    ElementsAre("REALGetRBVersion", "RegisterPluginVersion", "PluginRegisterClass",
                                "PluginRegisterClass", "PluginRegisterClass"));
        EXPECT_THAT(classes.sinceLast(), IsEmpty());
        expectNoReports(runtime);
    });
}

TEST(StartUp, EveryOtherNameIsAskedForOnceAtItsFirstUse) {
    support::inFreshProcess([] {
        const support::TemporaryFolder folder;
        Runtime runtime;
        support::loadSibling(runtime);
        NewNames names = askedNames(runtime);
        runtime.load(ZQM_PLUGIN);
        for (int round = 0; round < 2; ++round) {
            Speaker speaker(runtime);
            speaker.speak("Hello world", folder / "a.wav");
            speaker.object.call("startSpeakingString", runtime.string("Bytes", host::encoding::kNone),
                                fileUrl(folder / "b.wav"));
            EXPECT_TRUE(speaker.waitForEnd());
            EXPECT_THROW(speaker.object.call("Constructor"), host::HostException);
        }
        std::map<std::string, int> counts;
        for (const std::string& name : names.sinceLast()) {
            ++counts[name];
        }
        for (const auto& [name, count] : counts) {
            // Two wrappers ask for this one, each for itself.
            const int most = name == "REALGetStringCFString" ? 2 : 1;
            EXPECT_LE(count, most) << name;
        }
        EXPECT_EQ(counts["GetEventInstance"], 1);
        EXPECT_EQ(counts["REALLoadGlobalMethod"], 1);
        EXPECT_FALSE(counts.contains("newMemoryBlock"));
        expectNoReports(runtime);
    });
}

// A start reads a host string, an event for a word builds one and calls the handler.
void expectNames(double version, const Names& ofTheStart, const Names& ofTheEvent) {
    const support::TemporaryFolder folder;
    Runtime runtime(Options{.version = version});
    support::loadSibling(runtime);
    NewNames names = askedNames(runtime);
    runtime.load(ZQM_PLUGIN);
    EXPECT_THAT(names.sinceLast(),
                ElementsAre("REALGetRBVersion", "RegisterPluginVersion", "PluginRegisterClass"));
    Object object = runtime.create(kSynthesizer);
    EXPECT_THAT(names.sinceLast(), IsEmpty());
    object.call("Constructor");
    EXPECT_THAT(names.sinceLast(), IsEmpty());
    object.set("Rate", 300);
    object.set("Volume", 0.5);
    object.get("isSpeaking");
    EXPECT_THAT(names.sinceLast(), IsEmpty());
    for (const bool first : {true, false}) {
        ASSERT_TRUE(object.call("startSpeakingString", "Hello", fileUrl(folder / "a.wav")).asBool());
        EXPECT_EQ(names.sinceLast(), first ? ofTheStart : Names());
        ASSERT_TRUE(runtime.runUntilRaised(object, "willSpeakWord", kDeadline).has_value());
        EXPECT_EQ(names.sinceLast(), first ? ofTheEvent : Names());
        ASSERT_TRUE(runtime.runUntilRaised(object, "didFinishSpeaking", kDeadline).has_value());
        EXPECT_THAT(names.sinceLast(), IsEmpty());
    }
    EXPECT_THROW(object.call("Constructor"), host::HostException);
    EXPECT_THAT(names.sinceLast(), ElementsAre("PluginNewInstance", "REALSetPropValueString",
                                               "REALSetPropValueInteger", "RuntimeRaiseException"));
    expectNoReports(runtime);
}

TEST(StartUp, EveryNameIsAskedForAtItsFirstUseByAHostOf2011) {
    support::inFreshProcess([] {
        expectNames(2011.0, {"REALGetStringEncoding", "REALGetStringCFString"},
                    {"GetEventInstance", "REALLockObject", "REALBuildString", "REALSetStringEncoding",
                     "REALUnlockString", "REALUnlockObject"});
    });
}

TEST(StartUp, EveryNameIsAskedForAtItsFirstUseByAHostOf2023) {
    support::inFreshProcess([] {
        expectNames(2023.02, {"REALGetStringEncoding", "REALGetStringCFString"},
                    {"GetEventInstance", "REALLockObject", "REALBuildString", "REALSetStringEncoding",
                     "REALUnlockString", "REALUnlockObject"});
    });
}

// All members, of an object that was made for the class and is constructed or not.
void expectNeutralAnswers(Object& object, const std::string& file) {
    EXPECT_FALSE(object.call("startSpeakingString", "x").asBool());
    EXPECT_FALSE(object.call("startSpeakingString", "x", file).asBool());
    EXPECT_FALSE(object.call("startSpeakingString", String(), String()).asBool());
    EXPECT_FALSE(object.get("isSpeaking").asBool());
    object.call("stopSpeaking");
    EXPECT_TRUE(object.get("voice").isNull());
    object.set("voice", "gmw/de");
    object.set("voice", String());
    EXPECT_TRUE(object.get("voice").isNull());
    EXPECT_TRUE(object.call("_exception").isNull());
    EXPECT_FALSE(object.get("usesFeedbackWindow").asBool());
}

// These need nothing of the host, so they work.
void expectSettings(Object& object) {
    EXPECT_GT(object.get("Rate").asDouble(), 0) << "before it was set";
    EXPECT_EQ(object.get("Volume").asDouble(), 1) << "before it was set";
    object.set("Rate", 250);
    EXPECT_EQ(object.get("Rate").asDouble(), 250);
    object.set("Volume", 0.25);
    EXPECT_EQ(object.get("Volume").asDouble(), 0.25);
    EXPECT_FALSE(object.get("usesFeedbackWindow").asBool()) << "before it was set";
    object.set("usesFeedbackWindow", true);
    EXPECT_TRUE(object.get("usesFeedbackWindow").asBool());
    object.set("usesFeedbackWindow", false);
}

TEST(StartUp, WithAllNamesRefusedAfterItEveryMemberAnswersNeutrally) {
    support::inFreshProcess([] {
        const support::TemporaryFolder folder;
        Runtime runtime;
        loadPlugin(runtime);
        runtime.entryPoints().refuseAll();
        Object object = runtime.create(kSynthesizer);
        EXPECT_EQ(object.get("Rate").asDouble(), 0);
        EXPECT_EQ(object.get("Volume").asDouble(), 0);
        object.set("Rate", 250);
        object.set("Volume", 0.25);
        object.set("usesFeedbackWindow", true);
        EXPECT_EQ(object.get("Rate").asDouble(), 0);
        EXPECT_EQ(object.get("Volume").asDouble(), 0);
        expectNeutralAnswers(object, fileUrl(folder / "a.wav"));
        object.call("Constructor");
        object.call("Constructor");           // its exception can't be raised
        object.call("Constructor", "gmw/de"); // nor can this one's
        expectSettings(object);
        expectNeutralAnswers(object, fileUrl(folder / "b.wav"));
        runtime.construct(kSynthesizer, "gmw/de").reset();
        object.reset();
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
        expectNoReports(runtime);
        EXPECT_EQ(runtime.ledger(), host::Ledger());
    });
}

TEST(StartUp, WithAllNamesRefusedAfterTheConstructorEveryMemberAnswersNeutrally) {
    support::inFreshProcess([] {
        const support::TemporaryFolder folder;
        Runtime runtime;
        loadPlugin(runtime);
        Object object = runtime.construct(kSynthesizer, String());
        object.on("didFinishSpeaking", [](const host::Arguments&) { ADD_FAILURE(); });
        runtime.entryPoints().refuseAll();
        expectSettings(object);
        expectNeutralAnswers(object, fileUrl(folder / "a.wav"));
        object.call("Constructor"); // its exception can't be raised
        runtime.runFor(host::Seconds(0.1));
        object.reset();
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
        expectNoReports(runtime);
        EXPECT_EQ(runtime.ledger(), host::Ledger());
    });
}

TEST(StartUp, NameThatIsRefusedAtFirstIsAskedForAgain) {
    support::inFreshProcess([] {
        const support::TemporaryFolder folder;
        Runtime runtime;
        loadPlugin(runtime);
        runtime.entryPoints().refuse("GetEventInstance");
        Speaker speaker(runtime);
        ASSERT_TRUE(speaker.start("Hello world", folder / "a.wav"));
        ASSERT_TRUE(speaker.waitForSilence());
        // One round of the run loop is enough for all events of which none can be raised.
        const std::size_t before = runtime.entryPoints().lookups("GetEventInstance");
        EXPECT_TRUE(runtime.runUntil(
            [&] { return runtime.entryPoints().lookups("GetEventInstance") > before; }, kDeadline));
        EXPECT_THAT(speaker.ends, IsEmpty());
        runtime.entryPoints().allow("GetEventInstance");
        speaker.speak("Hello world", folder / "b.wav");
        EXPECT_EQ(speaker.words.size(), 2U);
        expectNoReports(runtime);
    });
}

struct Step {
    std::optional<double> version;
    std::int32_t revision;
};
class Revision : public testing::TestWithParam<Step> {};

TEST_P(Revision, FollowsTheHostsVersion) {
    support::inFreshProcess([] {
        Runtime runtime(Options{.version = GetParam().version});
        loadPlugin(runtime);
        EXPECT_EQ(runtime.announcedRevision(), GetParam().revision);
        expectNoReports(runtime); // also says that every record carries the revision, and 16 bytes of data
    });
}

INSTANTIATE_TEST_SUITE_P(All, Revision,
                         testing::Values(Step{2023.02, 13}, Step{2013.04, 13}, Step{2013.039, 12},
                                         Step{2013.03, 12}, Step{2013.029, 11}, Step{2013.0, 11},
                                         Step{2012.999, 10}, Step{2012.0, 10}, Step{2011.99, 9},
                                         Step{2011.0, 9}, Step{0.0, 9}, Step{std::nullopt, 9}));

} // namespace
} // namespace zqm::endtoend
