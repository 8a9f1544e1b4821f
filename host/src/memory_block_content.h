#pragma once

#include "object_content.h"

#include <cstddef>
#include <string_view>

namespace zqm::host {

inline constexpr std::string_view kMemoryBlockClass = "MemoryBlock";

class MemoryBlockContent final : public ObjectContent {
public:
    static constexpr const char* kWhat = "a MemoryBlock";

    MemoryBlockContent() = default;
    ~MemoryBlockContent() override;

    // All zero, in place of what was there; false, and no bytes, when the system has no room for them.
    bool allocate(std::size_t size);

    std::size_t size() const { return size_; }
    std::byte* data() const { return data_; }

private:
    void release();

    std::byte* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace zqm::host
