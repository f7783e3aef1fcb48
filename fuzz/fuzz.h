#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What every fuzzer defines; called with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
/// Called once before: pictures get no more memory than memory_limit.cpp says, so that what a few bytes can ask for
/// meets a want of memory instead of filling the machine.
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);

/// A rule that must hold for every input; the fuzzer keeps the input that breaks it.
#define FUZZ_CHECK(truth)           \
    do {                            \
        if (!(truth)) std::abort(); \
    } while (false)
