#include "settings/form_state.h"

#include <algorithm>

#include "common/assertion.h"

namespace glimmer {

namespace {

constexpr int32_t titleBarHeight = 32;  // generous at 96 dpi; at 192 half of the bar, still enough to take hold of
constexpr int32_t grip = 80;            // this much of the title bar's width must show

bool isSwitch(ControlClass kind) { return kind == ControlClass::CheckBox || kind == ControlClass::RadioButton; }

int64_t distance(const Rect& a, const Rect& b) {
    const int64_t dx = std::max<int64_t>({0, int64_t{b.left} - a.right, int64_t{a.left} - b.right});
    const int64_t dy = std::max<int64_t>({0, int64_t{b.top} - a.bottom, int64_t{a.top} - b.bottom});
    return dx * dx + dy * dy;
}

/// Whether the title bar can be taken hold of.
bool reachable(const Rect& bounds, std::span<const Rect> workAreas) {
    const Rect bar{bounds.left, bounds.top, bounds.right, bounds.top + titleBarHeight};
    return std::any_of(workAreas.begin(), workAreas.end(), [&bar](const Rect& area) {
        const Rect seen = bar.intersected(area);
        return !seen.empty() && seen.width() >= std::min(grip, bar.width()) && seen.top == bar.top;
    });
}

Rect onScreen(const Rect& bounds, std::span<const Rect> workAreas) {
    if (workAreas.empty()) return bounds;
    const Rect& area = *std::min_element(workAreas.begin(), workAreas.end(), [&bounds](const Rect& a, const Rect& b) {
        const Rect inA = bounds.intersected(a);
        const Rect inB = bounds.intersected(b);
        const int64_t shownA = inA.empty() ? 0 : int64_t{inA.width()} * inA.height();
        const int64_t shownB = inB.empty() ? 0 : int64_t{inB.width()} * inB.height();
        return shownA != shownB ? shownA > shownB : distance(bounds, a) < distance(bounds, b);
    });
    const Size size{std::min(bounds.width(), area.width()), std::min(bounds.height(), area.height())};
    Rect result{bounds.left, bounds.top, bounds.left + size.width, bounds.top + size.height};
    if (reachable(result, workAreas)) return result;
    const int32_t left = std::clamp(bounds.left, area.left, area.right - size.width);
    const int32_t top = std::clamp(bounds.top, area.top, area.bottom - size.height);
    return {left, top, left + size.width, top + size.height};
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
}

WindowGeometry restoreGeometry(const TCachedMemIniFile& store, std::string_view section, const WindowGeometry& standard,
                               std::span<const Rect> workAreas) {
    constexpr int32_t farthest = 1 << 20;  // no desktop is that large, and sums stay far from overflowing
    const Rect& bounds = standard.bounds;
    const int32_t left = store.readInteger(section, "Left", bounds.left, -farthest, farthest);
    const int32_t top = store.readInteger(section, "Top", bounds.top, -farthest, farthest);
    int32_t width = store.readInteger(section, "Width", bounds.width(), 0, farthest);
    int32_t height = store.readInteger(section, "Height", bounds.height(), 0, farthest);
    if (width < grip) width = bounds.width();  // no window was left like that
    if (height < titleBarHeight) height = bounds.height();
    return {onScreen({left, top, left + width, top + height}, workAreas),
            store.readBool(section, "isMaximized", standard.maximized)};
}

}  // namespace glimmer
