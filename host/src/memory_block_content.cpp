#include "memory_block_content.h"

#include <new>
#include <sys/mman.h>

namespace zqm::host {

namespace {

// From here on a block is mapped, so that its pages come when they are written. Below, sanitizers see who
// goes beyond its end.
constexpr std::size_t kMappedSize = std::size_t{1} << 20;

std::byte* map(std::size_t size) {
    void* address =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON | MAP_NORESERVE, -1, 0);
    return address == MAP_FAILED ? nullptr : static_cast<std::byte*>(address);
}

} // namespace

MemoryBlockContent::~MemoryBlockContent() {
    release();
}

bool MemoryBlockContent::allocate(std::size_t size) {
    release();
    if (size != 0) {
        data_ = size < kMappedSize ? new (std::nothrow) std::byte[size]() : map(size);
    }
    size_ = data_ == nullptr ? 0 : size;
    return size_ == size;
}

void MemoryBlockContent::release() {
    if (size_ < kMappedSize) {
        delete[] data_;
    } else {
        munmap(data_, size_);
    }
    data_ = nullptr;
    size_ = 0;
}

} // namespace zqm::host
