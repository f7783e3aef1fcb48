#include "capture/capture_options.h"

#include <algorithm>
#include <limits>
#include <string>

#include "settings/cached_mem_ini_file.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

std::string section() { return settingsSection("IECaptureOptions"); }

/// side * numerator / denominator, rounded, at least 1; the factors are positive 32-bit numbers.
int32_t scaled(int32_t side, int64_t numerator, int64_t denominator) {
    const int64_t value = (side * numerator + denominator / 2) / denominator;
    return static_cast<int32_t>(std::clamp<int64_t>(value, 1, std::numeric_limits<int32_t>::max()));
}

}  // namespace

CaptureOptions CaptureOptions::load(const TCachedMemIniFile& store) {
    const CaptureOptions defaults;
    CaptureOptions options;
    options.playSound = store.readBool(section(), "chkPlaySound", defaults.playSound);
    options.performUpdateCheck = store.readBool(section(), "chkPerformUpdateCheck", defaults.performUpdateCheck);
    options.outputSize =
        store.readBool(section(), "radFixedWidth", false) ? OutputSize::FixedWidth : OutputSize::Percent;
    options.percent = store.readInteger(section(), "spnPercent", defaults.percent, leastPercent, mostPercent);
    options.fixedWidth = store.readInteger(section(), "spnFixedWidth", defaults.fixedWidth, 1, mostWidth);
    return options;
}

void CaptureOptions::save(TCachedMemIniFile& store) const {
    store.writeBool(section(), "chkPlaySound", playSound);
    store.writeBool(section(), "chkPerformUpdateCheck", performUpdateCheck);
    store.writeBool(section(), "radPercent", outputSize == OutputSize::Percent);
    store.writeBool(section(), "radFixedWidth", outputSize == OutputSize::FixedWidth);
    store.writeInteger(section(), "spnPercent", percent);
    store.writeInteger(section(), "spnFixedWidth", fixedWidth);
}

Size CaptureOptions::outputFor(Size captured) const {
    if (captured.width <= 0 || captured.height <= 0) return captured;
    if (outputSize == OutputSize::FixedWidth) return {fixedWidth, scaled(captured.height, fixedWidth, captured.width)};
    return {scaled(captured.width, percent, 100), scaled(captured.height, percent, 100)};
}

}  // namespace glimmer
