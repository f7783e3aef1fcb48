#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "common/result.h"

namespace glimmer {

/// Called during a long operation with the part that is done, 0 to 1. False stops it with a Failure.
using Progress = std::function<bool(double)>;

/// Reports row `row` of `rows`, now and then; false when the operation is to stop. Nothing is thrown on through a
/// C library: an exception of the callback stops the operation too.
bool proceed(const Progress& progress, int32_t row, int32_t rows) noexcept;

/// Of `count` parts of equal length, the progress of part `index` (from 0).
Progress partOf(const Progress& whole, size_t index, size_t count);

/// The reason of an operation that was stopped so.
Failure cancelled();

}  // namespace glimmer
