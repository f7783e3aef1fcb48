#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// What libFuzzer changes an input with: `size` bytes of `room`; answers how many they are afterwards.
extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t room);
/// Called by libFuzzer instead of that, where it is defined.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t room, unsigned seed);

/// Gives every chunk of every PNG file in `data` the checksum that belongs to it, nested files first. A reader that
/// refuses what is damaged would otherwise see nothing of a changed input.
void repairPngChecksums(std::span<uint8_t> data);
