// Memory blocks of the host's own constructor, and the addresses of their bytes.

#include "plugin/memory_blocks.h"

#include "tests/bridge/bridge_host.h"

#include <limits>

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::MemoryBlock;
using zqm::host::Object;

constexpr const char* kConstructor = "Constructor(bytes as Integer)";
constexpr const char* kConvert = "Operator_Convert() As Ptr";

Object blockOf(PluginHost& host, std::int64_t size) {
    MemoryBlockWork work{.size = size};
    REALNewMemoryBlockWork(&work);
    EXPECT_EQ(work.size, size);
    return work.block != nullptr ? host->adopt(work.block) : Object();
}

TEST(NewMemoryBlock, IsOfTheSizeAskedForAndTheCallers) {
    inBridge([](PluginHost& host) {
        for (const std::int64_t size : {0, 1, 4, 1'000'000}) {
            const Object block = blockOf(host, size);
            ASSERT_FALSE(block.isNull());
            EXPECT_EQ(MemoryBlock(block).size(), static_cast<std::size_t>(size));
        }
    });
}

TEST(NewMemoryBlock, IsLargerThanAnInt32) {
    inBridge([](PluginHost& host) {
        constexpr std::int64_t kSize = 0x7FFF'FFFF;
        const Object block = blockOf(host, kSize);
        ASSERT_FALSE(block.isNull());
        EXPECT_EQ(MemoryBlock(block).size(), static_cast<std::size_t>(kSize));
    });
}

TEST(NewMemoryBlock, ThatComesOutSmallerIsReleased) {
    inBridge([](PluginHost& host) {
        host->memoryBlockFaults().made = 99;
        EXPECT_TRUE(blockOf(host, 100).isNull());
        host->memoryBlockFaults().made = 101;
        EXPECT_FALSE(blockOf(host, 100).isNull());
        host->memoryBlockFaults() = {.said = 99};
        EXPECT_TRUE(blockOf(host, 100).isNull());
        host->memoryBlockFaults() = {};
    });
}

TEST(NewMemoryBlock, ItsSizeMayComeFromTheEntryPoint) {
    for (const bool refused : {true, false}) {
        inBridge([refused](PluginHost& host) {
            if (refused) {
                host->entryPoints().refuse("REALGetPropValueInteger");
            } else {
                host->entryPoints().failEveryCall("REALGetPropValueInteger");
            }
            EXPECT_FALSE(blockOf(host, 100).isNull());
            EXPECT_EQ(host->entryPoints().calls("memoryBlockGetSize"), 1U);
            host->entryPoints().failEveryCall("memoryBlockGetSize"); // answers 0
            EXPECT_TRUE(blockOf(host, 100).isNull());
            EXPECT_FALSE(blockOf(host, 0).isNull());
        });
    }
}

TEST(NewMemoryBlock, WithoutTheClassIsNone) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        host->entryPoints().refuse("PluginNewInstance");
        EXPECT_TRUE(blockOf(host, 4).isNull());
        EXPECT_THAT(ObjectMethods::asked(), IsEmpty());
    });
}

TEST(NewMemoryBlock, LooksForItsConstructorOnce) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        for (int i = 0; i < 3; ++i) {
            EXPECT_FALSE(blockOf(host, 4).isNull());
        }
        ASSERT_EQ(ObjectMethods::asked().size(), 1U);
        EXPECT_EQ(ObjectMethods::asked().front().declaration, kConstructor);
    });
}

TEST(NewMemoryBlock, DoesNotLookAgainForAConstructorThatWasMissing) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALLoadObjectMethod");
        EXPECT_TRUE(blockOf(host, 4).isNull());
        host->entryPoints().allow("REALLoadObjectMethod");
        EXPECT_TRUE(blockOf(host, 4).isNull());
        EXPECT_EQ(host->entryPoints().calls("REALLoadObjectMethod"), 0U);
    });
}

// ---- the address of the bytes

TEST(MemoryBlockAddress, IsThatOfTheFirstByte) {
    inBridge([](PluginHost& host) {
        const MemoryBlock block = host->memoryBlock("bytes");
        EXPECT_EQ(MyREALMemoryBlockGetPtr(block.handle()), block.data());
        EXPECT_EQ(host->entryPoints().lookups("memoryBlockGetPtr"), 0U);
    });
}

TEST(MemoryBlockAddress, OfNullIsNullAndMakesNoProbe) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(MyREALMemoryBlockGetPtr(nullptr), nullptr);
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

std::vector<std::int32_t> probeSizes;
REALobject lastProbe = nullptr;

void noteProbes() {
    PluginHost::replace(
        "newMemoryBlock", +[](std::int32_t bytes) {
            probeSizes.push_back(bytes);
            lastProbe = hostFunction<REALobject(std::int32_t)>("newMemoryBlock")(bytes);
            return lastProbe;
        });
}

TEST(MemoryBlockAddress, AsksAProbeOfFourBytesForTheMethodOnce) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        noteProbes();
        const MemoryBlock block = host->memoryBlock("bytes");
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(MyREALMemoryBlockGetPtr(block.handle()), block.data());
        }
        EXPECT_THAT(probeSizes, ElementsAre(4));
        EXPECT_THAT(ObjectMethods::asked(), ElementsAre(ObjectMethods::Request{lastProbe, kConvert}));
    });
}

TEST(MemoryBlockAddress, AsksTheBlockItselfWhereNoProbeCanBeMade) {
    inBridge([](PluginHost& host) {
        const ObjectMethods methods;
        host->entryPoints().refuse("newMemoryBlock");
        const MemoryBlock block = host->memoryBlock("bytes");
        EXPECT_EQ(MyREALMemoryBlockGetPtr(block.handle()), block.data());
        EXPECT_THAT(ObjectMethods::asked(), ElementsAre(ObjectMethods::Request{block.handle(), kConvert}));
    });
}

TEST(MemoryBlockAddress, WithoutTheMethodProbesEachTimeAndAsksTheEntryPoint) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer(kConvert, nullptr);
        noteProbes();
        const MemoryBlock block = host->memoryBlock("bytes");
        EXPECT_EQ(MyREALMemoryBlockGetPtr(block.handle()), block.data());
        EXPECT_EQ(MyREALMemoryBlockGetPtr(block.handle()), block.data());
        EXPECT_THAT(probeSizes, ElementsAre(4, 4));
        EXPECT_EQ(ObjectMethods::asked().size(), 2U);
        EXPECT_EQ(host->entryPoints().calls("memoryBlockGetPtr"), 2U);
    });
}

TEST(MemoryBlockAddress, WithoutMethodAndEntryPointIsNull) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("REALLoadObjectMethod");
        host->entryPoints().refuse("memoryBlockGetPtr");
        const MemoryBlock block = host->memoryBlock("bytes");
        EXPECT_EQ(MyREALMemoryBlockGetPtr(block.handle()), nullptr);
    });
}

} // namespace
