// The memory that handles lie in. It tells of any address what is there without touching it.

#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <new>
#include <tsl/robin_map.h>
#include <vector>

namespace zqm::host {

enum class HandleKind : std::uint8_t { Object, String, Text, StringData };

// What one handle needs: memory for the host's own part, and behind it, where plugins are given that, for
// theirs.
struct HandleLayout {
    HandleKind kind;
    std::size_t own;
    std::size_t given = 0;

    friend auto operator<=>(const HandleLayout&, const HandleLayout&) = default;
};

class HandleSlots {
public:
    enum class State : std::uint8_t { Free, Live, Dead };

    // Of an address in use; `memory` is where the host's own part is. Otherwise free and null.
    struct Slot {
        State state = State::Free;
        HandleKind kind = HandleKind::Object;
        void* memory = nullptr;
    };

    HandleSlots() = default;
    HandleSlots(HandleSlots&&) = default;
    HandleSlots& operator=(HandleSlots&&) = default;

    // From the memory of the host's own part to what plugins are given.
    static constexpr std::size_t lead(std::size_t own) { return roundedUp(own) + kGap; }

    // Memory of that layout. It is free until something is made in it and it is made live.
    void* take(const HandleLayout& layout);
    void makeLive(void* memory) { setState(memory, State::Live); }
    // Nothing may touch the memory from now on, and nobody is given it.
    void makeDead(void* memory);
    // The memory may be taken again.
    void giveBack(void* memory);

    // Of the address that plugins are given.
    Slot at(const void* address) const {
        const Place place = placeOf(address);
        if (place.chunk == nullptr) {
            return {};
        }
        const State state = place.chunk->states[place.index];
        return state == State::Free ? Slot() : Slot{state, place.chunk->layout().kind, memoryAt(place)};
    }

    template <typename Action>
    void forEachLive(Action&& action) const {
        for (const auto& [base, chunk] : chunks_) {
            for (std::uint32_t index = 0; index < chunk->states.size(); ++index) {
                if (chunk->states[index] == State::Live) {
                    action(chunk->layout().kind, memoryAt({chunk.get(), index}));
                }
            }
        }
    }

private:
    static constexpr std::size_t kAlignment = 16;
    // An address tells its chunk by its high bits. Only a slot that is larger makes its chunk so.
    static constexpr std::size_t kChunkSize = std::size_t{1} << 18;
#ifdef __SANITIZE_ADDRESS__
    static constexpr std::size_t kGap = 16; // what runs over its end is noticed
#else
    static constexpr std::size_t kGap = 0;
#endif

    static constexpr std::size_t roundedUp(std::size_t size) {
        return (size + kAlignment - 1) / kAlignment * kAlignment;
    }

    struct Chunk;
    // All slots of one layout.
    struct Pool {
        HandleLayout layout;
        std::size_t slotSize;
        std::size_t lead;
        Chunk* newest = nullptr;
        std::vector<void*> free = {};
    };
    struct Released {
        void operator()(std::byte* memory) const;
    };
    struct Chunk {
        const HandleLayout& layout() const { return pool->layout; }

        Pool* pool;
        std::unique_ptr<std::byte, Released> memory;
        std::uintptr_t first; // address that plugins are given of the first slot
        std::uint32_t slotSize;
        std::size_t most;               // so many slots
        std::vector<State> states = {}; // of the slots that were ever taken
    };
    struct Place {
        Chunk* chunk = nullptr;
        std::uint32_t index = 0;
    };

    struct BaseHash {
        std::size_t operator()(std::uintptr_t base) const { return base / kChunkSize; }
    };

    Place placeOf(const void* address) const {
        const auto number = reinterpret_cast<std::uintptr_t>(address);
        const auto found = chunks_.find(number / kChunkSize * kChunkSize);
        if (found == chunks_.end()) {
            return {};
        }
        Chunk& chunk = *found->second;
        const std::uintptr_t offset = number - chunk.first; // huge when before it
        if (offset >= kChunkSize) {
            return {};
        }
        const auto index = static_cast<std::uint32_t>(offset) / chunk.slotSize;
        const bool starts = static_cast<std::uint32_t>(offset) % chunk.slotSize == 0;
        return starts && index < chunk.states.size() ? Place{&chunk, index} : Place{};
    }

    static void* memoryAt(const Place& place) {
        return place.chunk->memory.get() + std::size_t{place.index} * place.chunk->slotSize;
    }
    // Of memory that was taken.
    Place placeOfMemory(void* memory) const;
    void setState(void* memory, State state);
    Pool& poolOf(const HandleLayout& layout);
    void* takeNew(Pool& pool);

    std::map<HandleLayout, Pool> pools_; // never moved: chunks point to them
    tsl::robin_map<std::uintptr_t, std::unique_ptr<Chunk>, BaseHash> chunks_;
};

} // namespace zqm::host
