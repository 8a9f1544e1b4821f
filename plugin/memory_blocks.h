// The host's MemoryBlock: made of a given size, and where its bytes are.

#pragma once

#include "plugin/host_interface.h"

#include <cstdint>

// What REALNewMemoryBlockWork is asked for and answers.
struct MemoryBlockWork {
    std::int64_t size;          // bytes
    REALobject block = nullptr; // written on success only, with one lock that is the reader's
};

// Makes a block with the host language's own constructor, which takes sizes that "newMemoryBlock" can't. The
// argument is a MemoryBlockWork; the form is that of a function which the host runs under its own exception
// handler, since the constructor may raise.
void REALNewMemoryBlockWork(void* work);

// The address of the block's first byte; null for a null block and where the host can't tell. Borrowed: it
// lives as long as the block.
void* MyREALMemoryBlockGetPtr(REALobject block);

// The size in bytes; 0 where the host can't tell.
std::int64_t memoryBlockSize(REALobject block);

// The host method "Operator_Convert() As Ptr", kept once it was loaded.
extern void* (*myMemoryBlockGetPtr)(REALobject block);
