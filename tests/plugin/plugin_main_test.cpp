// The entry function against hosts of every version, and hosts that lack something.

#include "plugin/plugin_main.h"

#include "plugin/class_records.h"
#include "plugin/entry_points.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

double hostVersion = 0;
std::vector<std::string> asked;
std::vector<std::int32_t> announced;
std::vector<ClassRecord*> registered;
std::map<std::string, void*> offered;

void* resolve(const char* name) {
    asked.emplace_back(name);
    const auto found = offered.find(name);
    return found != offered.end() ? found->second : nullptr;
}

double getVersion() {
    return hostVersion;
}
void registerPluginVersion(std::int32_t revision) {
    announced.push_back(revision);
}
void registerClass(void* record) {
    registered.push_back(static_cast<ClassRecord*>(record));
}

void offerAll() {
    offered = {
        {"REALGetRBVersion", reinterpret_cast<void*>(getVersion)},
        {"RegisterPluginVersion", reinterpret_cast<void*>(registerPluginVersion)},
        {"PluginRegisterClass", reinterpret_cast<void*>(registerClass)},
    };
}

struct Step {
    double hostVersion;
    std::int32_t revision;
};

class PluginMain : public testing::TestWithParam<Step> {};

TEST_P(PluginMain, AnnouncesTheRevisionOfTheHostVersionAndStampsEveryRecord) {
    zqm::support::inFreshProcess([] {
        offerAll();
        hostVersion = GetParam().hostVersion;
        REALPluginMain(resolve);

        EXPECT_EQ(rbversion_rbversion, GetParam().hostVersion);
        EXPECT_EQ(CurrentREALControlVersion, static_cast<std::uint64_t>(GetParam().revision));
        EXPECT_THAT(announced, ElementsAre(GetParam().revision));
        ASSERT_EQ(registered.size(), 3U);
        for (const ClassRecord* record : registered) {
            EXPECT_EQ(record->version, static_cast<std::uint32_t>(GetParam().revision));
            EXPECT_EQ(record->dataSize, 16U);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(HostVersions, PluginMain,
                         testing::Values(Step{0.0, 9}, Step{-1.0, 9}, Step{2011.0, 9}, Step{2011.999, 9},
                                         Step{2012.0, 10}, Step{2012.999, 10}, Step{2013.0, 11},
                                         Step{2013.029, 11}, Step{2013.03, 12}, Step{2013.039, 12},
                                         Step{2013.04, 13}, Step{2016.0, 13}, Step{2023.02, 13}));

TEST(PluginMainOrder, AsksForThreeNamesAndNothingElse) {
    zqm::support::inFreshProcess([] {
        offerAll();
        hostVersion = 2013.04;
        REALPluginMain(resolve);
        EXPECT_THAT(asked, ElementsAre("REALGetRBVersion", "RegisterPluginVersion", "PluginRegisterClass"));
    });
}

TEST(PluginMainOrder, RegistersTheRecognizerFirstAndTheSynthesizerLast) {
    zqm::support::inFreshProcess([] {
        offerAll();
        REALPluginMain(resolve);
        ASSERT_EQ(registered.size(), 3U);
        EXPECT_STREQ(registered[0]->name, "NSSpeechRecognizerZQM");
        EXPECT_STREQ(registered[1]->name, "NSVoiceZQM");
        EXPECT_STREQ(registered[2]->name, "NSSpeechSynthesizerZQM");
    });
}

TEST(PluginMainState, IsInitialBeforeTheFirstCallAndNamesThePluginAfterIt) {
    zqm::support::inFreshProcess([] {
        EXPECT_EQ(gResolver, nullptr);
        EXPECT_EQ(rbversion_rbversion, 0.0);
        EXPECT_EQ(CurrentREALControlVersion, 13U);
        EXPECT_EQ(gpartname, nullptr);
        EXPECT_EQ(gpluginname, nullptr);
        EXPECT_EQ(gplugin, 0);
        for (const ClassRecord* record : classRecords()) {
            EXPECT_EQ(record->version, 13U);
            EXPECT_EQ(record->dataSize, 8U);
        }
        offerAll();
        REALPluginMain(resolve);
        EXPECT_EQ(gResolver, resolve);
        EXPECT_STREQ(gpartname, "NSSpeechSynthesizer");
        EXPECT_STREQ(gpluginname, "Cocoa");
        EXPECT_EQ(gplugin, 1);
    });
}

TEST(PluginMainFailures, WithoutAVersionTheHostIsTheOldest) {
    zqm::support::inFreshProcess([] {
        offerAll();
        offered.erase("REALGetRBVersion");
        REALPluginMain(resolve);
        EXPECT_EQ(rbversion_rbversion, 0.0);
        EXPECT_THAT(announced, ElementsAre(9));
    });
}

TEST(PluginMainFailures, WithoutRegistrationEachClassAsksAnewAndIsSkipped) {
    zqm::support::inFreshProcess([] {
        offerAll();
        offered.erase("PluginRegisterClass");
        REALPluginMain(resolve);
        EXPECT_TRUE(registered.empty());
        EXPECT_THAT(asked, ElementsAre("REALGetRBVersion", "RegisterPluginVersion", "PluginRegisterClass",
                                       "PluginRegisterClass", "PluginRegisterClass"));
    });
}

TEST(PluginMainTwice, RepeatsEveryStepAndResetsNothing) {
    zqm::support::inFreshProcess([] {
        offerAll();
        hostVersion = 2013.04;
        REALPluginMain(resolve);
        offered.erase("REALGetRBVersion");
        REALPluginMain(resolve);
        EXPECT_EQ(rbversion_rbversion, 2013.04);
        EXPECT_THAT(announced, ElementsAre(13, 13));
        EXPECT_EQ(registered.size(), 6U);
        for (const ClassRecord* record : classRecords()) {
            EXPECT_EQ(record->dataSize, 16U);
        }
        // Kept from the first call: registration is not asked for again.
        EXPECT_EQ(std::count(asked.begin(), asked.end(), "PluginRegisterClass"), 1);
    });
}

} // namespace
