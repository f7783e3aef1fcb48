#pragma once

#include <functional>
#include <string>
#include <vector>

#include "editor/annotations/shapes_list.h"
#include "editor/document/document.h"
#include "editor/window/picker_window.h"

namespace glimmer {

/// Lets the user pick one of the system's fonts.
void openFontPicker(wxWindow* parent, const wxRect& owner, const std::string& current,
                    std::function<void(const std::string&)> picked);

/// What the style picker can do with styles.
struct StyleActions {
    std::function<void(const TShapeStyle&)> picked;
    std::function<TShapeStyle()> current;  ///< the settings that "Save as..." stores
};
void openStylePicker(wxWindow* parent, const wxRect& owner, const std::string& current, StyleActions actions);

/// The list of all annotations by step number: the user drags entries or moves them by buttons, up and down, and sets
/// the first number. Modal. Answers the new numbers, or nothing when it was cancelled.
std::vector<std::pair<AnnotationId, int32_t>> askForNumbers(wxWindow* parent, const TShapesList& annotations,
                                                            AnnotationId selected);

}  // namespace glimmer
