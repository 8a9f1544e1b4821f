#include "handle_slots.h"

#include <algorithm>
#include <cstring>
#include <utility>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif

namespace zqm::host {

namespace {

constexpr unsigned char kDeadPattern = 0xDD;

} // namespace

void HandleSlots::Released::operator()(std::byte* memory) const {
    ::operator delete (memory, std::align_val_t{kChunkSize});
}

HandleSlots::Place HandleSlots::placeOfMemory(void* memory) const {
    const auto number = reinterpret_cast<std::uintptr_t>(memory);
    Chunk& chunk = *chunks_.find(number / kChunkSize * kChunkSize)->second;
    const auto offset = static_cast<std::size_t>(static_cast<std::byte*>(memory) - chunk.memory.get());
    return {&chunk, static_cast<std::uint32_t>(offset / chunk.slotSize)};
}

void HandleSlots::setState(void* memory, State state) {
    const Place place = placeOfMemory(memory);
    place.chunk->states[place.index] = state;
}

HandleSlots::Pool& HandleSlots::poolOf(const HandleLayout& layout) {
    const auto found = pools_.find(layout);
    if (found != pools_.end()) {
        return found->second;
    }
    const std::size_t itsLead = layout.given == 0 ? 0 : lead(layout.own);
    const std::size_t size = roundedUp(itsLead == 0 ? layout.own : itsLead + layout.given) + kGap;
    return pools_.emplace(layout, Pool{.layout = layout, .slotSize = size, .lead = itsLead}).first->second;
}

void* HandleSlots::takeNew(Pool& pool) {
    if (pool.newest == nullptr || pool.newest->states.size() == pool.newest->most) {
        const std::size_t most = std::max<std::size_t>(kChunkSize / pool.slotSize, 1);
        const std::size_t size = std::max(kChunkSize, pool.slotSize);
        std::unique_ptr<std::byte, Released> memory(
            static_cast<std::byte*>(::operator new (size, std::align_val_t{kChunkSize})));
        ASAN_POISON_MEMORY_REGION(memory.get(), size);
        const auto base = reinterpret_cast<std::uintptr_t>(memory.get());
        // A slot beyond a chunk's size has no second one to be told from.
        const auto step = static_cast<std::uint32_t>(std::min(pool.slotSize, kChunkSize));
        auto chunk = std::make_unique<Chunk>(Chunk{.pool = &pool,
                                                   .memory = std::move(memory),
                                                   .first = base + pool.lead,
                                                   .slotSize = step,
                                                   .most = most});
        chunk->states.reserve(most);
        pool.newest = chunk.get();
        chunks_.emplace(base, std::move(chunk));
    }
    Chunk& chunk = *pool.newest;
    chunk.states.push_back(State::Free);
    return memoryAt({&chunk, static_cast<std::uint32_t>(chunk.states.size() - 1)});
}

void* HandleSlots::take(const HandleLayout& layout) {
    Pool& pool = poolOf(layout);
    void* memory = nullptr;
    if (pool.free.empty()) {
        memory = takeNew(pool);
    } else {
        memory = pool.free.back();
        pool.free.pop_back();
    }
    ASAN_UNPOISON_MEMORY_REGION(memory, layout.own);
    ASAN_UNPOISON_MEMORY_REGION(static_cast<std::byte*>(memory) + pool.lead, layout.given);
    return memory;
}

void HandleSlots::makeDead(void* memory) {
    const Place place = placeOfMemory(memory);
    const Pool& pool = *place.chunk->pool;
    place.chunk->states[place.index] = State::Dead;
    std::memset(memory, kDeadPattern, pool.layout.own);
    std::memset(static_cast<std::byte*>(memory) + pool.lead, kDeadPattern, pool.layout.given);
    ASAN_POISON_MEMORY_REGION(memory, pool.slotSize);
}

void HandleSlots::giveBack(void* memory) {
    const Place place = placeOfMemory(memory);
    place.chunk->states[place.index] = State::Free;
    ASAN_POISON_MEMORY_REGION(memory, place.chunk->pool->slotSize);
    place.chunk->pool->free.push_back(memory);
}

} // namespace zqm::host
