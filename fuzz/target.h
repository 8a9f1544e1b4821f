// What a target defines, by libFuzzer's names.

#pragma once

#include <cstddef>
#include <cstdint>

// Ends the program when something does not hold of what comes of these bytes; always answers 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

// Called once, before the first input, if there is one.
extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int* count, char*** arguments);

// How many calls the inputs made until now, where that is not one each.
extern "C" [[gnu::weak]] std::size_t zqmFuzzedCalls();
