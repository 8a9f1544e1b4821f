// Lists of platform strings in host arrays.

#include "plugin/string_arrays.h"

#include "tests/bridge/bridge_host.h"

#import <Foundation/Foundation.h>

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::Array;
using zqm::host::ElementType;
using zqm::host::Value;

std::vector<std::string> textsOf(const Array& array) {
    std::vector<std::string> texts;
    for (const Value& value : array.values()) {
        texts.push_back(value.asText());
    }
    return texts;
}

TEST(FillStringArray, InsertsEveryStringAtItsIndex) {
    inBridge([](PluginHost& host) {
        const Array array = host->array(ElementType::String);
        FillStringArray(array.array(),
                        [NSArray arrayWithObjects:@"one", @"Gr\u00FC\u00DF", @"", @"last", nil]);
        EXPECT_THAT(textsOf(array), ElementsAre("one", "Gr\xC3\xBC\xC3\x9F", "", "last"));
        EXPECT_EQ(host->entryPoints().calls("PluginStringArrayInsertProc"), 4U);
    });
}

TEST(FillStringArray, InsertsInFrontOfWhatIsThere) {
    inBridge([](PluginHost& host) {
        const Array array = host->array(ElementType::String, {"old"});
        FillStringArray(array.array(), [NSArray arrayWithObjects:@"one", @"two", nil]);
        EXPECT_THAT(textsOf(array), ElementsAre("one", "two", "old"));
    });
}

TEST(FillStringArray, TakesNoArrayAndNoList) {
    inBridge([](PluginHost& host) {
        const Array array = host->array(ElementType::String, {"old"});
        FillStringArray(nullptr, [NSArray arrayWithObject:@"one"]);
        FillStringArray(array.array(), nil);
        FillStringArray(nullptr, nil);
        EXPECT_THAT(textsOf(array), ElementsAre("old"));
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(FillStringArray, AnEmptyListAsksForNoInsertFunction) {
    inBridge([](PluginHost& host) {
        const Array array = host->array(ElementType::String, {"old"});
        FillStringArray(array.array(), [NSArray array]);
        EXPECT_THAT(textsOf(array), ElementsAre("old"));
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(FillStringArray, WithoutInsertFunctionReleasesItsStrings) {
    for (const bool refused : {true, false}) {
        inBridge([refused](PluginHost& host) {
            if (refused) {
                host->entryPoints().refuse("PluginStringArrayInsertProc");
            } else {
                host->entryPoints().failEveryCall("PluginStringArrayInsertProc"); // answers none
            }
            const Array array = host->array(ElementType::String);
            FillStringArray(array.array(), [NSArray arrayWithObjects:@"one", @"two", nil]);
            EXPECT_THAT(textsOf(array), IsEmpty());
            EXPECT_EQ(host->entryPoints().calls("REALUnlockString"), 2U);
        });
    }
}

std::vector<std::int64_t> indices;

// The index goes on although one insertion could not be done.
TEST(FillStringArray, CountsOnWhereAnInsertionFails) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "PluginStringArrayInsertProc", +[](REALarray) {
                static int asked = 0;
                const auto insert =
                    +[](REALarray, std::int64_t index, REALstring) { indices.push_back(index); };
                return ++asked == 2 ? nullptr : insert;
            });
        const Array array = host->array(ElementType::String);
        FillStringArray(array.array(), [NSArray arrayWithObjects:@"one", @"two", @"three", nil]);
        EXPECT_THAT(indices, ElementsAre(0, 2));
    });
}

} // namespace
