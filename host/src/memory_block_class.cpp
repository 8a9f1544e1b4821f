// Memory blocks, by the members of their class and by entry points.

#include "builtin_classes.h"
#include "builtin_function.h"
#include "entry_point_types.h"
#include "memory_block_content.h"
#include "offered_entry_points.h"

namespace zqm::host {

namespace {

std::int64_t saidSize(Core& core, const MemoryBlockContent& block) {
    return core.memoryBlockFaults.said.value_or(static_cast<std::int64_t>(block.size()));
}

void* saidAddress(Core& core, const MemoryBlockContent& block) {
    return core.memoryBlockFaults.withoutAddress ? nullptr : block.data();
}

bool allocate(Core& core, MemoryBlockContent& block, std::int64_t bytes) {
    if (bytes < 0) {
        core.raise("OutOfBoundsException", "a MemoryBlock of " + std::to_string(bytes) + " bytes");
        return false;
    }
    if (!block.allocate(static_cast<std::size_t>(bytes))) {
        core.raise("OutOfMemoryException",
                   "no room for a MemoryBlock of " + std::to_string(bytes) + " bytes");
        return false;
    }
    return true;
}

// ---- members

std::int64_t size(Core& core, MemoryBlockContent& block, std::int64_t /*parameter*/) {
    return saidSize(core, block);
}

void construct(Core& core, MemoryBlockContent& block, std::int64_t bytes) {
    allocate(core, block, core.memoryBlockFaults.made.value_or(bytes));
}

void* convert(Core& core, MemoryBlockContent& block) {
    return saidAddress(core, block);
}

std::unique_ptr<ObjectContent> makeContent() {
    return std::make_unique<MemoryBlockContent>();
}

// ---- entry points

REALobject newMemoryBlock(Core& core, std::int32_t bytes) {
    if (bytes < 0) {
        core.reports().add(Report::Kind::BadArgument, std::string(entry::REALNewMemoryBlockOriginal::kName) +
                                                          ": " + std::to_string(bytes) + " bytes");
        return nullptr;
    }
    auto content = std::make_unique<MemoryBlockContent>();
    if (!allocate(core, *content, bytes)) {
        return nullptr;
    }
    return core.makeObject(kMemoryBlockClass, std::move(content)).release();
}

void* getPtr(Core& core, REALobject object) {
    const auto* block = core.findContent<MemoryBlockContent>(object, entry::REALMemoryBlockGetPtr::kName);
    return block == nullptr ? nullptr : saidAddress(core, *block);
}

std::int64_t getSize(Core& core, REALobject object) {
    const auto* block = core.findContent<MemoryBlockContent>(object, entry::REALMemoryBlockGetSize::kName);
    return block == nullptr ? 0 : saidSize(core, *block);
}

} // namespace

std::vector<BuiltinClass> memoryBlockClasses() {
    return {
        {.name = kMemoryBlockClass,
         .properties = {{.name = "Size",
                         .type = "Integer",
                         .getter = memberFunction<"MemoryBlock.Size", size>()}},
         .methods = {{.declaration = "Constructor(bytes as Integer)",
                      .function = memberFunction<"constructor of MemoryBlock", construct>()},
                     {.declaration = "Operator_Convert() As Ptr",
                      .function = memberFunction<"MemoryBlock.Operator_Convert", convert>()}},
         .makeContent = makeContent},
    };
}

std::vector<EntryPoints::Entry> memoryBlockEntryPoints() {
    return {
        offer<entry::REALNewMemoryBlockOriginal, newMemoryBlock>(),
        offer<entry::REALMemoryBlockGetPtr, getPtr>(),
        offer<entry::REALMemoryBlockGetSize, getSize>(),
    };
}

} // namespace zqm::host
