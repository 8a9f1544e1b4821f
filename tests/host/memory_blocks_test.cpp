#include "tests/host/plain_host.h"

#include <cstring>

namespace zqm::host::test {
namespace {

constexpr const char* kConstructor = "Constructor(bytes as Integer)";
constexpr const char* kConvert = "Operator_Convert() As Ptr";
using Constructor = void(REALobject, std::int64_t);
using Convert = void*(REALobject);

class MemoryBlocks : public PlainHost {
protected:
    using PlainHost::PlainHost;

    MemoryBlock constructed(std::int64_t bytes) {
        Object block = runtime.adopt(call<REALobject>("PluginNewInstance", "MemoryBlock"));
        method<Constructor>(block, kConstructor)(block.handle(), bytes);
        return MemoryBlock(block);
    }
    MemoryBlock made(std::int32_t bytes) {
        return MemoryBlock(runtime.adopt(call<REALobject>("newMemoryBlock", bytes)));
    }
    std::int64_t sizeProperty(const Object& block) {
        std::int64_t size = -7;
        EXPECT_TRUE(call<bool>("REALGetPropValueInteger", block.handle(), "Size", &size));
        return size;
    }
    std::int64_t size(const Object& block) {
        return call<std::int64_t>("memoryBlockGetSize", block.handle());
    }
    void* address(const Object& block) { return call<void*>("memoryBlockGetPtr", block.handle()); }
};

TEST_F(MemoryBlocks, AreMadeZeroAndWrittenByAPlugin) {
    for (const MemoryBlock& block : {constructed(5), made(5)}) {
        EXPECT_EQ(sizeProperty(block), 5);
        EXPECT_EQ(size(block), 5);
        EXPECT_EQ(block.bytes(), std::string(5, '\0'));
        ASSERT_EQ(address(block), block.data());
        EXPECT_EQ(method<Convert>(block, kConvert)(block.handle()), address(block));
        std::memcpy(address(block), "hello", 5);
        EXPECT_EQ(block.bytes(), "hello");
    }
}

TEST_F(MemoryBlocks, OfTheHostProgram) {
    MemoryBlock block = runtime.memoryBlock("a\0b");
    EXPECT_EQ(block.bytes(), "a");
    block = runtime.memoryBlock(std::string_view("a\0b", 3));
    EXPECT_EQ(block.size(), 3U);
    block.write(1, "xy");
    EXPECT_EQ(block.bytes(), "axy");
    EXPECT_THROW(block.write(2, "xy"), CallError);
    EXPECT_THROW(block.write(4, ""), CallError);
    EXPECT_EQ(runtime.memoryBlock(std::size_t{7}).size(), 7U);
    EXPECT_EQ(MemoryBlock().size(), 0U);
    EXPECT_THROW(MemoryBlock(runtime.date(2020)), CallError);
    EXPECT_EQ(runtime.construct("MemoryBlock", 4).get("Size").asInteger(), 4);
    EXPECT_EQ(block.call("Operator_Convert").asInteger(), reinterpret_cast<std::int64_t>(block.data()));
}

TEST_F(MemoryBlocks, WithoutBytes) {
    for (const MemoryBlock& block :
         {made(0), constructed(0), MemoryBlock(runtime.create("MemoryBlock")), runtime.memoryBlock("")}) {
        EXPECT_EQ(size(block), 0);
        EXPECT_EQ(address(block), nullptr);
        EXPECT_EQ(block.bytes(), "");
    }
}

TEST_F(MemoryBlocks, OfMoreThanTwoGigabytesTakeUpNoMemoryBeforeTheyAreWritten) {
    constexpr std::int64_t kSize = 5'000'000'000;
    const MemoryBlock block = constructed(kSize);
    EXPECT_EQ(sizeProperty(block), kSize);
    ASSERT_NE(address(block), nullptr);
    block.data()[kSize - 1] = std::byte{42};
    EXPECT_EQ(block.data()[kSize - 1], std::byte{42});
    EXPECT_EQ(block.data()[kSize / 2], std::byte{0});
}

TEST_F(MemoryBlocks, ConstructedAgainHaveNewBytes) {
    for (const std::int64_t bytes : {3LL, 3'000'000LL, 5LL}) {
        MemoryBlock block = constructed(4'000'000);
        block.write(0, "x");
        method<Constructor>(block, kConstructor)(block.handle(), bytes);
        EXPECT_EQ(block.size(), static_cast<std::size_t>(bytes));
        EXPECT_EQ(*block.data(), std::byte{0});
    }
}

TEST_F(MemoryBlocks, ThatCannotBeAreNotMade) {
    EXPECT_TRUE(made(-1).isNull());
    expectReport(Report::Kind::BadArgument, "newMemoryBlock: -1 bytes");
    const MemoryBlock block = constructed(1);
    auto* const construct = method<Constructor>(block, kConstructor);
    EXPECT_EQ(raisedBy([&] { construct(block.handle(), -1); }), "OutOfBoundsException");
    EXPECT_EQ(raisedBy([&] { construct(block.handle(), std::int64_t{1} << 62); }), "OutOfMemoryException");
    EXPECT_EQ(size(block), 0);
    EXPECT_THROW(runtime.memoryBlock(std::size_t{1} << 62), CallError);
}

TEST_F(MemoryBlocks, MayBeSmallerThanWasAsked) {
    runtime.memoryBlockFaults().made = 3;
    EXPECT_EQ(constructed(10).size(), 3U);
    EXPECT_EQ(made(10).size(), 10U);
    runtime.memoryBlockFaults() = {};
    EXPECT_EQ(constructed(10).size(), 10U);
}

TEST_F(MemoryBlocks, MayTellAnotherSize) {
    runtime.memoryBlockFaults().said = -5;
    const MemoryBlock block = runtime.memoryBlock("abc");
    EXPECT_EQ(sizeProperty(block), -5);
    EXPECT_EQ(size(block), -5);
    EXPECT_EQ(block.size(), 3U);
}

TEST_F(MemoryBlocks, MayHideTheirAddress) {
    runtime.memoryBlockFaults().withoutAddress = true;
    const MemoryBlock block = runtime.memoryBlock("abc");
    EXPECT_EQ(address(block), nullptr);
    EXPECT_EQ(method<Convert>(block, kConvert)(block.handle()), nullptr);
    EXPECT_EQ(block.bytes(), "abc");
}

TEST_F(MemoryBlocks, MisuseIsReported) {
    const Object date = runtime.date(2020);
    const String string = runtime.string("x");
    for (const char* name : {"memoryBlockGetPtr", "memoryBlockGetSize"}) {
        EXPECT_EQ(call<void*>(name, nullptr), nullptr);
        expectReport(Report::Kind::NullHandle, name);
        EXPECT_EQ(call<void*>(name, this), nullptr);
        expectReport(Report::Kind::ForeignHandle, name);
        EXPECT_EQ(call<void*>(name, deadObject()), nullptr);
        expectReport(Report::Kind::DeadHandle, name);
        EXPECT_EQ(call<void*>(name, string.handle()), nullptr);
        expectReport(Report::Kind::WrongKind, name);
        EXPECT_EQ(call<void*>(name, date.handle()), nullptr);
        expectReport(Report::Kind::WrongKind, std::string(name) + ": Date instead of a MemoryBlock");
    }
    const MemoryBlock block = runtime.memoryBlock("abc");
    EXPECT_EQ(method<Convert>(block, kConvert)(date.handle()), nullptr);
    expectReport(Report::Kind::WrongKind, "MemoryBlock.Operator_Convert: Date instead of a MemoryBlock");
}

class MemoryBlocksWithoutMethods : public MemoryBlocks {
protected:
    MemoryBlocksWithoutMethods()
        : MemoryBlocks(Options{.without = {"MemoryBlock.Constructor", "MemoryBlock.Operator_Convert"}}) {}
};

TEST_F(MemoryBlocksWithoutMethods, AreMadeByTheEntryPoint) {
    const MemoryBlock block = made(3);
    EXPECT_EQ(method<Constructor>(block, kConstructor), nullptr);
    EXPECT_EQ(method<Convert>(block, kConvert), nullptr);
    EXPECT_NE(address(block), nullptr);
}

} // namespace
} // namespace zqm::host::test
