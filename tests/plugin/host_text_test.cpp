// The holder of one host string's UTF-8 bytes.

#include "plugin/host_text.h"

#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

namespace encoding = zqm::host::encoding;
using testing::IsEmpty;

TEST(RbText, HoldsTheTextInUtf8AndGivesEverythingBack) {
    PluginHost host;
    const auto before = host->ledger();
    {
        rbText text(host->string("caf\x8E", encoding::kMacRoman).release());
        EXPECT_LT(text.length(), 0);
        EXPECT_STREQ(text.GetUTF8(), "café");
        EXPECT_EQ(text.length(), 5);
        EXPECT_FALSE(text.fetchFailed());
    }
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(host->reports(), IsEmpty());
}

TEST(RbText, FetchesOnce) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        rbText text(host->string("once").release());
        const char* first = text.GetUTF8();
        EXPECT_EQ(text.GetUTF8(), first);
        EXPECT_EQ(host->entryPoints().calls("PluginGetStringData"), 1U);
    });
}

TEST(RbText, OfNullIsEmptyAndAsksNothing) {
    PluginHost host;
    rbText text(nullptr);
    EXPECT_STREQ(text.GetUTF8(), "");
    EXPECT_EQ(text.length(), 0);
    EXPECT_FALSE(text.fetchFailed());
    EXPECT_EQ(host->entryPoints().calls("PluginGetStringData"), 0U);
}

TEST(RbText, NeverReadGivesTheStringBack) {
    PluginHost host;
    const auto before = host->ledger();
    { const rbText text(host->string("unread").release()); }
    EXPECT_EQ(host->ledger(), before);
}

TEST(RbText, ReadsRawBytesAsTheyStand) {
    PluginHost host;
    const auto before = host->ledger();
    {
        rbText text(host->string("caf\x8E", encoding::kMacRoman).release(), true);
        EXPECT_STREQ(text.GetUTF8(), "caf\x8E");
        EXPECT_EQ(text.length(), 4);
    }
    EXPECT_EQ(host->ledger(), before);
    EXPECT_THAT(host->reports(), IsEmpty());
}

TEST(RbText, IsEmptyAndSaysSoWhereTheHostHasNoData) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        PluginHost::refuse("PluginGetStringData");
        const auto before = host->ledger();
        {
            rbText text(host->string("text").release());
            EXPECT_STREQ(text.GetUTF8(), "");
            EXPECT_EQ(text.length(), 0);
            EXPECT_TRUE(text.fetchFailed());
        }
        EXPECT_EQ(host->ledger(), before);
    });
}

// A host's data need not end with the text.
TEST(RbText, TerminatesACopyOfDataThatGoesOn) {
    zqm::support::inFreshProcess([] {
        PluginHost host;
        static const char longer[] = "text and more";
        static int disposed = 0;
        PluginHost::replace(
            "PluginGetStringData", +[](REALstring, std::uint32_t wanted, REALstringData* out) {
                EXPECT_EQ(wanted, static_cast<std::uint32_t>(kCFStringEncodingUTF8));
                *out = {wanted, 0, longer, 4, nullptr};
                return true;
            });
        PluginHost::replace(
            "PluginDisposeStringData", +[](REALstringData* data) {
                EXPECT_EQ(data->data, longer);
                ++disposed;
            });
        {
            rbText text(host->string("whatever").release());
            EXPECT_STREQ(text.GetUTF8(), "text");
            EXPECT_EQ(text.length(), 4);
        }
        EXPECT_EQ(disposed, 1);
    });
}

} // namespace
