#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What every fuzzer defines; called with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

/// A rule that must hold for every input; the fuzzer keeps the input that breaks it.
#define FUZZ_CHECK(truth)           \
    do {                            \
        if (!(truth)) std::abort(); \
    } while (false)
