#pragma once

#include "zqmhost/object.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zqm::host {

// A block of memory of the host. Its bytes are zero until they are written, and large ones take up no memory
// before.
class MemoryBlock : public Object {
public:
    MemoryBlock() = default; // nil
    // Throws CallError when the object is no memory block; nil stays nil.
    explicit MemoryBlock(Object object);

    std::size_t size() const;                           // 0 for nil
    std::byte* data() const;                            // null when it has no bytes
    std::string bytes() const;                          // a copy of them
    void write(std::size_t at, std::string_view bytes); // throws CallError beyond the end
};

// How this host's memory blocks go wrong, all through the runtime.
struct MemoryBlockFaults {
    std::optional<std::int64_t> made = {}; // the bytes that "Constructor" makes, whatever is asked for
    std::optional<std::int64_t> said = {}; // what "Size" and "memoryBlockGetSize" answer
    bool withoutAddress = false;           // "Operator_Convert" and "memoryBlockGetPtr" answer null
};

} // namespace zqm::host
