#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace glimmer {

class TCachedMemIniFile;

/// What the user set for captures that a host delivers: sound, update check and the size of the outcome. Shown by
/// TIECaptureOptions and kept under its controls' names.
struct CaptureOptions {
    enum class OutputSize : uint8_t { Percent = 0, FixedWidth = 1 };
    static constexpr int32_t leastPercent = 1;
    static constexpr int32_t mostPercent = 400;
    static constexpr int32_t mostWidth = 32767;

    bool playSound = true;
    bool performUpdateCheck = false;
    OutputSize outputSize = OutputSize::Percent;
    int32_t percent = 100;
    int32_t fixedWidth = 1024;  ///< pixels

    static CaptureOptions load(const TCachedMemIniFile& store);
    void save(TCachedMemIniFile& store) const;

    /// The size that a capture shall get: proportions are kept, halves rounded up, no side below 1.
    [[nodiscard]] Size outputFor(Size captured) const;
    bool operator==(const CaptureOptions&) const = default;
};

}  // namespace glimmer
