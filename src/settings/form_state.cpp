#include "settings/form_state.h"

#include <algorithm>

#include "common/assertion.h"

namespace glimmer {

namespace {

constexpr int32_t titleBarHeight = 32;  // generous at 96 dpi; at 192 half of the bar, still enough to take hold of
constexpr int32_t grip = 80;            // this much of the title bar's width must show
constexpr int32_t usualDotsPerInch = 96;
constexpr const char* dotsPerInchKey = "DotsPerInch";

bool isSwitch(ControlClass kind) { return kind == ControlClass::CheckBox || kind == ControlClass::RadioButton; }

int64_t distance(const Rect& a, const Rect& b) {
    const int64_t dx = std::max<int64_t>({0, int64_t{b.left} - a.right, int64_t{a.left} - b.right});
    const int64_t dy = std::max<int64_t>({0, int64_t{b.top} - a.bottom, int64_t{a.top} - b.bottom});
    return dx * dx + dy * dy;
}

/// Whether the title bar can be taken hold of.
bool reachable(const Rect& bounds, std::span<const WorkArea> workAreas) {
    const Rect bar{bounds.left, bounds.top, bounds.right, bounds.top + titleBarHeight};
    return std::any_of(workAreas.begin(), workAreas.end(), [&bar](const WorkArea& work) {
        const Rect seen = bar.intersected(work.area);
        return !seen.empty() && seen.width() >= std::min(grip, bar.width()) && seen.top == bar.top;
    });
}

/// The one that shows most of the window, or else is nearest; there is at least one.
const WorkArea& workAreaOf(const Rect& bounds, std::span<const WorkArea> workAreas) {
    return *std::min_element(workAreas.begin(), workAreas.end(), [&bounds](const WorkArea& a, const WorkArea& b) {
        const Rect inA = bounds.intersected(a.area);
        const Rect inB = bounds.intersected(b.area);
        const int64_t shownA = inA.empty() ? 0 : int64_t{inA.width()} * inA.height();
        const int64_t shownB = inB.empty() ? 0 : int64_t{inB.width()} * inB.height();
        return shownA != shownB ? shownA > shownB : distance(bounds, a.area) < distance(bounds, b.area);
    });
}

/// At the scale of its monitor.
WindowGeometry onScreen(WindowGeometry geometry, std::span<const WorkArea> workAreas) {
    if (workAreas.empty()) return geometry;
    const Rect& bounds = geometry.bounds;
    const auto& [area, dotsPerInch] = workAreaOf(bounds, workAreas);
    const auto scaled = [&geometry, to = dotsPerInch](int32_t length) {
        return static_cast<int32_t>((int64_t{length} * to + geometry.dotsPerInch / 2) / geometry.dotsPerInch);
    };
    const Size size{std::min(scaled(bounds.width()), area.width()), std::min(scaled(bounds.height()), area.height())};
    Rect result{bounds.left, bounds.top, bounds.left + size.width, bounds.top + size.height};
    if (!reachable(result, workAreas)) {
        const int32_t left = std::clamp(bounds.left, area.left, area.right - size.width);
        const int32_t top = std::clamp(bounds.top, area.top, area.bottom - size.height);
        result = {left, top, left + size.width, top + size.height};
    }
    return {result, geometry.maximized, dotsPerInch};
}

}  // namespace

void saveControl(TCachedMemIniFile& store, std::string_view section, const FormControl* pControl) {
    GLIMMER_ASSERT(pControl != nullptr, "pControl!=NULL", "uFormOptions");
    const ControlClass kind = pControl->controlClass();
    if (kind == ControlClass::Other) return;
    if (isSwitch(kind)) {
        store.writeBool(section, pControl->name(), pControl->value() != 0);
    } else {
        store.writeInteger(section, pControl->name(), pControl->value());
    }
}

void restoreControl(const TCachedMemIniFile& store, std::string_view section, FormControl* pControl) {
    GLIMMER_ASSERT(pControl != nullptr, "pControl!=NULL", "uFormOptions");
    const ControlClass kind = pControl->controlClass();
    if (kind == ControlClass::Other || !store.keyExists(section, pControl->name())) return;
    const int32_t present = pControl->value();
    if (isSwitch(kind)) {
        pControl->setValue(store.readBool(section, pControl->name(), present != 0) ? 1 : 0);
    } else if (pControl->least() <= pControl->most()) {  // an empty list has nothing to select
        pControl->setValue(store.readInteger(section, pControl->name(), present, pControl->least(), pControl->most()));
    }
}

void saveGeometry(TCachedMemIniFile& store, std::string_view section, const WindowGeometry& geometry, bool isForm) {
    if (isForm) store.writeBool(section, "isMaximized", geometry.maximized);
    store.writeInteger(section, "Left", geometry.bounds.left);
    store.writeInteger(section, "Top", geometry.bounds.top);
    store.writeInteger(section, "Width", geometry.bounds.width());
    store.writeInteger(section, "Height", geometry.bounds.height());
    if (geometry.dotsPerInch != usualDotsPerInch)
        store.writeInteger(section, dotsPerInchKey, geometry.dotsPerInch);
    else
        store.removeKey(section, dotsPerInchKey);
}

WindowGeometry restoreGeometry(const TCachedMemIniFile& store, std::string_view section, const WindowGeometry& standard,
                               std::span<const WorkArea> workAreas) {
    constexpr int32_t farthest = 1 << 20;  // no desktop is that large, and sums stay far from overflowing
    const Rect& bounds = standard.bounds;
    const int32_t left = store.readInteger(section, "Left", bounds.left, -farthest, farthest);
    const int32_t top = store.readInteger(section, "Top", bounds.top, -farthest, farthest);
    int32_t width = store.readInteger(section, "Width", 0, 0, farthest);
    int32_t height = store.readInteger(section, "Height", 0, 0, farthest);
    const int32_t dots = store.readInteger(
        section, dotsPerInchKey, store.keyExists(section, "Width") ? usualDotsPerInch : standard.dotsPerInch, 48, 960);
    const auto usual = [&](int32_t length) {
        return static_cast<int32_t>(int64_t{length} * dots / standard.dotsPerInch);
    };
    if (width < grip) width = usual(bounds.width());  // no window was left like that
    if (height < titleBarHeight) height = usual(bounds.height());
    return onScreen(
        {{left, top, left + width, top + height}, store.readBool(section, "isMaximized", standard.maximized), dots},
        workAreas);
}

}  // namespace glimmer
