// What the plugin asks its host for, and when.

#include "tests/endtoend/fresh_process.h"
#include "tests/endtoend/speaking.h"

#include <gmock/gmock.h>
#include <map>

namespace zqm::endtoend {
namespace {

using host::Object;
using host::Options;
using host::Runtime;
using host::String;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(StartUp, AsksForThreeNamesOnly) {
    inFreshProcess([] {
        Runtime runtime;
        runtime.load(ZQM_PLUGIN);
        EXPECT_THAT(runtime.entryPoints().asked(),
                    ElementsAre("REALGetRBVersion", "RegisterPluginVersion", "PluginRegisterClass"));
        EXPECT_EQ(runtime.entryPoints().calls("PluginRegisterClass"), 3U);
        EXPECT_THAT(runtime.classNames(),
                    ElementsAre("NSSpeechRecognizerZQM", "NSVoiceZQM", "NSSpeechSynthesizerZQM"));
        expectNoReports(runtime);
    });
}

TEST(StartUp, WithoutRegistrationAsksOncePerClass) {
    inFreshProcess([] {
        Runtime runtime(Options{.refused = {"PluginRegisterClass"}});
        EXPECT_THROW(runtime.load(ZQM_PLUGIN), host::LoadError);
        EXPECT_THAT(runtime.entryPoints().asked(),
                    ElementsAre("REALGetRBVersion", "RegisterPluginVersion", "PluginRegisterClass",
                                "PluginRegisterClass", "PluginRegisterClass"));
        EXPECT_THAT(runtime.classNames(), IsEmpty());
        expectNoReports(runtime);
    });
}

TEST(StartUp, EveryOtherNameIsAskedForOnceAtItsFirstUse) {
    inFreshProcess([] {
        const support::TemporaryFolder folder;
        Runtime runtime;
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
        for (const std::string& name : runtime.entryPoints().asked()) {
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

TEST(StartUp, WithAllNamesRefusedAfterItEveryMemberAnswersNeutrally) {
    inFreshProcess([] {
        Runtime runtime;
        runtime.load(ZQM_PLUGIN);
        runtime.entryPoints().refuseAll();
        Object object = runtime.create(kSynthesizer);
        EXPECT_FALSE(object.call("startSpeakingString", "x").asBool());
        object.call("Constructor");
        object.call("Constructor"); // its exception can't be raised
        EXPECT_FALSE(object.call("startSpeakingString", "x").asBool());
        EXPECT_FALSE(object.call("startSpeakingString", "x", "file:///tmp/x.wav").asBool());
        EXPECT_TRUE(object.get("voice").isNull());
        EXPECT_FALSE(object.get("isSpeaking").asBool());
        EXPECT_TRUE(object.call("_exception").isNull());
        object.set("voice", "gmw/de");
        object.set("Rate", 200);
        EXPECT_EQ(object.get("Rate").asDouble(), 200);
        object.call("stopSpeaking");
        object.reset();
        expectNoReports(runtime);
        EXPECT_EQ(runtime.ledger(), host::Ledger());
    });
}

TEST(StartUp, NameThatIsRefusedAtFirstIsAskedForAgain) {
    inFreshProcess([] {
        const support::TemporaryFolder folder;
        Runtime runtime;
        runtime.load(ZQM_PLUGIN);
        runtime.entryPoints().refuse("GetEventInstance");
        Speaker speaker(runtime);
        ASSERT_TRUE(speaker.start("Hello world", folder / "a.wav"));
        runtime.runUntil([&] { return !speaker.object.get("isSpeaking").asBool(); }, kDeadline);
        runtime.runFor(host::Seconds(0.1));
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
    inFreshProcess([] {
        Runtime runtime(Options{.version = GetParam().version});
        runtime.load(ZQM_PLUGIN);
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
