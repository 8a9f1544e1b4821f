#include "bridge/data.h"

#include "plugin/host_errors.h"
#include "plugin/host_handles.h"
#include "plugin/memory_blocks.h"

#import <Foundation/Foundation.h>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>

namespace {

OwnedObject newBlock(std::int64_t size) {
    if (size < std::numeric_limits<std::int32_t>::max()) {
        return OwnedObject{REALNewMemoryBlockOriginal(static_cast<std::int32_t>(size))};
    }
    MemoryBlockWork work{.size = size};
    // What the host raises on the way is told apart by the missing block alone.
    const OwnedObject dropped{REALCallFunctionWithExceptionHandler(REALNewMemoryBlockWork, &work)};
    return OwnedObject{work.block};
}

OwnedObject newBlockWith(const void* bytes, std::int64_t size) {
    OwnedObject block = newBlock(size);
    void* place = MyREALMemoryBlockGetPtr(block.get());
    if (place == nullptr) {
        return {};
    }
    std::memcpy(place, bytes, static_cast<std::size_t>(size));
    return block;
}

} // namespace

REALobject NSDataRB(NSData* data) {
    const void* bytes = [data bytes];
    const auto size = static_cast<std::int64_t>([data length]);
    if (bytes == nullptr || size <= 0) {
        return nullptr;
    }
    OwnedObject block;
    try {
        block = newBlockWith(bytes, size);
    } catch (const std::bad_alloc&) {
        block = {};
    }
    if (!block) {
        std::array<char, 200> message{};
        std::snprintf(message.data(), message.size(),
                      "Failed to allocate a memoryblock with %lld bytes in size.",
                      static_cast<long long>(size));
        RaiseException("OutOfMemoryException", message.data(), 0, 0);
    }
    return block.release();
}
