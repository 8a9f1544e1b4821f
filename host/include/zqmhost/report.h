#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace zqm::host {

// A breach of the interface by a plugin. It is noted and the call answered neutrally, never a crash.
struct Report {
    // What was breached.
    enum class Kind {
        NullHandle,
        ForeignHandle,  // never given out by this runtime
        DeadHandle,     // its last lock is gone
        WrongKind,      // a handle of another kind than asked for
        UnbalancedLock, // unlocked more often than locked, or kept beyond its end
        MissingLock,    // an object ended while a handler of its event ran: the plugin held no lock on it
        DamagedHeader,  // the host's part of an object was written to
        BadRecord,      // a class record or one of its tables
        BadDeclaration, // a declaration that does not parse
        BadArgument,    // any other argument that makes no sense
        WrongThread,    // an entry point called on another thread than the runtime's
    };
    Kind kind;
    std::string text; // one line: the entry point or record, and what is wrong with it

    friend bool operator==(const Report&, const Report&) = default;
};

// In words, as "null handle".
const char* nameOf(Report::Kind kind);

// What is alive at one moment, and the locks on it. Two equal ledgers around a piece of work mean that it
// left nothing behind.
struct Ledger {
    // Of one kind of handles.
    struct Count {
        std::int64_t handles = 0;
        std::int64_t locks = 0;
        friend bool operator==(const Count&, const Count&) = default;
    };
    Count objects; // Variants, arrays, dictionaries and the like included
    Count strings;
    Count texts;
    Count stringData; // filled in by "PluginGetStringData", not yet disposed of; one lock each

    friend bool operator==(const Ledger&, const Ledger&) = default;
};

} // namespace zqm::host
