// The cheap, deterministic choice a fuzz target makes per input.
#pragma once

#include <cstddef>
#include <cstdint>

// A hash of every byte and the size, eight bytes a step. A function of the input alone, so
// a finding replays as it was found; spread over seeds that all end alike (in a pop record
// or padding). Each mutation draws the choice afresh, so the share of each variation stays
// what its bits give, even where one variation (the dump, say) brings more inputs into the
// corpus. Left out of the coverage: its branches say nothing of the library.
__attribute__((no_sanitize("coverage"))) inline uint32_t fuzzChoiceOf(const uint8_t* data, size_t size)
{
    const uint64_t prime = 0x100000001B3ull;
    uint64_t hash = 0xCBF29CE484222325ull ^ size;
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        uint64_t word = 0;
        for (int b = 7; b >= 0; --b) word = (word << 8) | data[i + b];
        hash = (hash ^ word) * prime;
    }
    for (; i < size; ++i) hash = (hash ^ data[i]) * prime;
    // The multiplications carry each bit upwards only: fold the high bits down.
    hash ^= hash >> 31;
    hash *= 0xBF58476D1CE4E5B9ull;
    hash ^= hash >> 29;
    return static_cast<uint32_t>(hash ^ (hash >> 32));
}
