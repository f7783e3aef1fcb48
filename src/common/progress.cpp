#include "common/progress.h"

namespace glimmer {

bool proceed(const Progress& progress, int32_t row, int32_t rows) noexcept {
    constexpr int32_t rowsBetweenReports = 64;
    if (!progress || row % rowsBetweenReports != 0) return true;
    try {
        return progress(static_cast<double>(row) / rows);
    } catch (...) {
        return false;
    }
}

Progress partOf(const Progress& whole, size_t index, size_t count) {
    if (!whole) return {};
    return [whole, index, count](double done) {
        return whole((static_cast<double>(index) + done) / static_cast<double>(count));
    };
}

Failure cancelled() { return Failure{"The operation was cancelled."}; }

}  // namespace glimmer
