// Bytes of the platform as memory blocks of the host.

#include "bridge/data.h"

#include "tests/bridge/bridge_host.h"

#import <Foundation/Foundation.h>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

// Data that says to have bytes which it hasn't: none of them may be read.
@interface HugeData : NSData {
    const void* bytes_;
    NSUInteger length_;
}
- (id)initWithAddress:(const void*)address length:(NSUInteger)length;
@end

@implementation HugeData

- (id)initWithBytesNoCopy:(void*)bytes length:(NSUInteger)length freeWhenDone:(BOOL)isOwner {
    return self;
}

- (id)initWithAddress:(const void*)address length:(NSUInteger)length {
    self = [super init];
    bytes_ = address;
    length_ = length;
    return self;
}

- (const void*)bytes {
    return bytes_;
}

- (NSUInteger)length {
    return length_;
}

@end

namespace {

using namespace zqm::bridge::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zqm::host::MemoryBlock;
using zqm::host::Object;

constexpr NSUInteger kFirstLarge = 0x7FFF'FFFF; // bytes; smaller ones are made with "newMemoryBlock"

NSData* dataOf(std::string_view bytes) {
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

NSData* hugeData(NSUInteger length) {
    static const char byte = 'x';
    return [[[HugeData alloc] initWithAddress:&byte length:length] autorelease];
}

std::string failure(NSUInteger length) {
    return "OutOfMemoryException: Failed to allocate a memoryblock with " + std::to_string(length) +
           " bytes in size.";
}

// The conversion ends in this one exception, and in nothing else.
void expectFailure(PluginHost& host, NSData* data) {
    REALobject block = nullptr;
    EXPECT_THAT(raisedBy(host, [&] { block = NSDataRB(data); }), ElementsAre(failure([data length])));
    EXPECT_EQ(block, nullptr);
}

TEST(DataToHost, IsACopyOfTheBytes) {
    inBridge([](PluginHost& host) {
        for (const std::string& bytes :
             {std::string("x"), std::string("a\0b\xFF", 4), std::string(100'000, 'y')}) {
            const MemoryBlock block(host->adopt(NSDataRB(dataOf(bytes))));
            EXPECT_EQ(block.bytes(), bytes);
        }
        EXPECT_EQ(host->entryPoints().lookups("PluginCallFunctionWithExceptionHandler"), 0U);
    });
}

TEST(DataToHost, NothingAndNoBytesAreNullWithoutAnError) {
    inBridge([](PluginHost& host) {
        EXPECT_EQ(NSDataRB(nil), nullptr);
        EXPECT_EQ(NSDataRB([NSData data]), nullptr);
        EXPECT_EQ(NSDataRB([NSMutableData dataWithCapacity:100]), nullptr);
        EXPECT_EQ(NSDataRB([[[HugeData alloc] initWithAddress:nullptr length:10] autorelease]), nullptr);
        EXPECT_EQ(NSDataRB(hugeData(~NSUInteger{0})), nullptr); // negative
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(DataToHost, WithoutEntryPointIsOutOfMemory) {
    inBridge([](PluginHost& host) {
        host->entryPoints().refuse("newMemoryBlock");
        expectFailure(host, dataOf("bytes"));
    });
}

TEST(DataToHost, WithoutAddressIsOutOfMemoryAndLeavesNoBlock) {
    inBridge([](PluginHost& host) {
        host->memoryBlockFaults().withoutAddress = true;
        expectFailure(host, dataOf("bytes"));
        host->memoryBlockFaults() = {};
    });
}

TEST(DataToHost, ANativeOutOfMemoryIsTheSameError) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "newMemoryBlock", +[](std::int32_t) -> REALobject { throw std::bad_alloc(); });
        expectFailure(host, dataOf("bytes"));
    });
}

// After the block was made.
TEST(DataToHost, ANativeOutOfMemoryLaterLeavesNoBlock) {
    inBridge([](PluginHost& host) {
        ObjectMethods methods;
        methods.answer("Operator_Convert() As Ptr",
                       reinterpret_cast<void*>(+[](REALobject) -> void* { throw std::bad_alloc(); }));
        expectFailure(host, dataOf("bytes"));
    });
}

// ---- sizes that "newMemoryBlock" is not given

std::vector<std::int32_t> sizesGiven;

TEST(DataToHost, AnotherByteMakesItLarge) {
    inBridge([](PluginHost& host) {
        PluginHost::replace(
            "newMemoryBlock", +[](std::int32_t size) -> REALobject {
                sizesGiven.push_back(size);
                return nullptr;
            });
        host->entryPoints().failEveryCall("PluginCallFunctionWithExceptionHandler");
        expectFailure(host, hugeData(kFirstLarge - 1));
        EXPECT_THAT(sizesGiven, ElementsAre(0x7FFF'FFFE));
        EXPECT_EQ(host->entryPoints().calls("PluginCallFunctionWithExceptionHandler"), 0U);
        expectFailure(host, hugeData(kFirstLarge));
        expectFailure(host, hugeData(std::numeric_limits<std::int64_t>::max()));
        EXPECT_THAT(sizesGiven, ElementsAre(0x7FFF'FFFE));
        EXPECT_EQ(host->entryPoints().calls("PluginCallFunctionWithExceptionHandler"), 2U);
    });
}

TEST(DataToHost, ALargeOneThatComesOutSmallerIsOutOfMemory) {
    inBridge([](PluginHost& host) {
        host->memoryBlockFaults().made = 1000;
        expectFailure(host, hugeData(kFirstLarge));
        host->memoryBlockFaults() = {};
    });
}

TEST(DataToHost, ALargeOneWithoutAddressIsOutOfMemory) {
    inBridge([](PluginHost& host) {
        host->memoryBlockFaults().withoutAddress = true;
        expectFailure(host, hugeData(kFirstLarge));
        host->memoryBlockFaults() = {};
    });
}

TEST(DataToHost, ALargeOneWithoutEntryPointIsOutOfMemory) {
    for (const char* missing :
         {"PluginCallFunctionWithExceptionHandler", "PluginNewInstance", "REALLoadObjectMethod"}) {
        inBridge([missing](PluginHost& host) {
            if (std::string(missing) == "PluginNewInstance") {
                // The exception that tells of it is an instance too.
                PluginHost::replace(
                    missing, +[](const char* name) {
                        return std::string(name) == "MemoryBlock"
                                   ? nullptr
                                   : hostFunction<REALobject(const char*)>("PluginNewInstance")(name);
                    });
            } else {
                host->entryPoints().refuse(missing);
            }
            expectFailure(host, hugeData(kFirstLarge));
        });
    }
}

// What the constructor raises stays with the handler; the one error is the conversion's own.
TEST(DataToHost, TheExceptionOfTheHostsConstructorIsDropped) {
    inBridge([](PluginHost& host) {
        host->memoryBlockFaults().made = -1;
        expectFailure(host, hugeData(kFirstLarge));
        EXPECT_EQ(host->entryPoints().calls("PluginCallFunctionWithExceptionHandler"), 1U);
        host->memoryBlockFaults() = {};
    });
}

REALobject exceptionGiven = nullptr;

TEST(DataToHost, AnExceptionBesideABlockIsDroppedToo) {
    inBridge([](PluginHost& host) {
        const Object exception = host->create("RuntimeException");
        exceptionGiven = exception.handle();
        PluginHost::replace(
            "PluginCallFunctionWithExceptionHandler", +[](void (* /*function*/)(void*), void* /*context*/) {
                hostFunction<void(REALobject)>("REALLockObject")(exceptionGiven);
                return exceptionGiven;
            });
        expectFailure(host, hugeData(kFirstLarge));
    });
}

// A range of addresses of that size, all of them the same few bytes of memory.
class RepeatedMemory {
public:
    explicit RepeatedMemory(std::size_t size) : size_((size + kWindow - 1) / kWindow * kWindow) {
        std::FILE* const file = std::tmpfile();
        EXPECT_EQ(ftruncate(fileno(file), kWindow), 0);
        start_ = static_cast<char*>(
            mmap(nullptr, size_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
        EXPECT_NE(start_, MAP_FAILED);
        for (std::size_t at = 0; at < size_; at += kWindow) {
            EXPECT_NE(
                mmap(start_ + at, kWindow, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, fileno(file), 0),
                MAP_FAILED);
        }
        std::fclose(file);
    }
    RepeatedMemory(const RepeatedMemory&) = delete;
    RepeatedMemory& operator=(const RepeatedMemory&) = delete;
    ~RepeatedMemory() { munmap(start_, size_); }

    char* start() const { return start_; }
    std::string_view window() const { return {start_, kWindow}; }

private:
    static constexpr std::size_t kWindow = 1 << 20;

    std::size_t size_;
    char* start_;
};

void* placeOfBlock = nullptr;

TEST(DataToHost, ALargeOneIsCopied) {
    inBridge([](PluginHost& host) {
        const RepeatedMemory source(kFirstLarge);
        const RepeatedMemory place(kFirstLarge);
        std::memset(source.start(), 'x', source.window().size());
        placeOfBlock = place.start();
        ObjectMethods methods;
        methods.answer("Operator_Convert() As Ptr",
                       reinterpret_cast<void*>(+[](REALobject) { return placeOfBlock; }));
        NSData* data = [[[HugeData alloc] initWithAddress:source.start() length:kFirstLarge] autorelease];
        const Object block = host->adopt(NSDataRB(data));
        EXPECT_EQ(MemoryBlock(block).size(), kFirstLarge);
        EXPECT_EQ(place.window(), source.window());
        EXPECT_EQ(host->entryPoints().calls("PluginCallFunctionWithExceptionHandler"), 1U);
        EXPECT_EQ(host->entryPoints().calls("newMemoryBlock"), 1U); // to look for the method
    });
}

} // namespace
