// The events of one utterance that are heard and not yet delivered: many, while the host runs no loop, so
// they are kept small.

#pragma once

#include "engine/protocol/protocol.h"
#include "platform/speech_event.h"

#include <cstdint>
#include <deque>
#include <string>

namespace zqm::platform {

class EventQueue {
public:
    // Of a text of at most 2^32 UTF-16 units.
    void add(const protocol::Word& word);
    void add(const protocol::Phoneme& phoneme);
    void add(protocol::Problem problem);
    void add(const protocol::Sync& sync);

    [[nodiscard]] bool isEmpty() const { return items_.empty(); }

    // The first of them, which there is; its utterance is for the caller to fill in.
    [[nodiscard]] SpeechEvent first() const;
    void removeFirst();
    void clear();

private:
    struct Item {
        double time;
        std::uint32_t first;  // position, opcode or sync message
        std::uint32_t second; // length
        SpeechEvent::Kind kind;
    };

    std::deque<Item> items_;
    std::deque<std::string> messages_; // of the problems among them
};

} // namespace zqm::platform
