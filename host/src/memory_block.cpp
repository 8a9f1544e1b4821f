#include "zqmhost/memory_block.h"

#include "memory_block_content.h"
#include "object_views.h"

#include <cstring>
#include <utility>

namespace zqm::host {

MemoryBlock::MemoryBlock(Object object) : Object(checked<MemoryBlockContent>(std::move(object))) {}

std::size_t MemoryBlock::size() const {
    return isNull() ? 0 : contentOf<MemoryBlockContent>(core(), *this).size();
}

std::byte* MemoryBlock::data() const {
    return contentOf<MemoryBlockContent>(core(), *this).data();
}

std::string MemoryBlock::bytes() const {
    return size() == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data()), size());
}

// NOLINTNEXTLINE(readability-make-member-function-const): the block is another one afterwards
void MemoryBlock::write(std::size_t at, std::string_view bytes) {
    if (at > size() || bytes.size() > size() - at) {
        throw CallError(std::to_string(bytes.size()) + " bytes at " + std::to_string(at) +
                        " of a memory block of " + std::to_string(size()));
    }
    if (!bytes.empty()) {
        std::memcpy(data() + at, bytes.data(), bytes.size());
    }
}

} // namespace zqm::host
