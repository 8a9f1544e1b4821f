#include "plugin/memory_blocks.h"

#include "plugin/host_handles.h"

void* (*myMemoryBlockGetPtr)(REALobject block) = nullptr;

std::int64_t memoryBlockSize(REALobject block) {
    std::int64_t size = 0;
    return REALGetPropValueInteger(block, "Size", &size) ? size : REALMemoryBlockGetSize(block);
}

void REALNewMemoryBlockWork(void* work) {
    auto& request = *static_cast<MemoryBlockWork*>(work);
    OwnedObject block{REALnewInstance("MemoryBlock")};
    if (!block) {
        return;
    }
    using Constructor = void (*)(REALobject, std::int64_t);
    static const auto c =
        reinterpret_cast<Constructor>(REALLoadObjectMethod(block.get(), "Constructor(bytes as Integer)"));
    if (c == nullptr) {
        return;
    }
    c(block.get(), request.size);
    if (memoryBlockSize(block.get()) >= request.size) {
        request.block = block.release();
    }
}

void* MyREALMemoryBlockGetPtr(REALobject block) {
    if (block == nullptr) {
        return nullptr;
    }
    if (myMemoryBlockGetPtr == nullptr) {
        constexpr std::int32_t kProbeSize = 4;
        const OwnedObject probe{REALNewMemoryBlockOriginal(kProbeSize)};
        myMemoryBlockGetPtr = reinterpret_cast<decltype(myMemoryBlockGetPtr)>(
            REALLoadObjectMethod(probe ? probe.get() : block, "Operator_Convert() As Ptr"));
    }
    return myMemoryBlockGetPtr != nullptr ? myMemoryBlockGetPtr(block) : REALMemoryBlockGetPtr(block);
}
