#pragma once

#include <functional>

#include "editor/canvas/canvas_context.h"
#include "editor/canvas/edit_tool.h"

namespace glimmer {

/// What the panels show and the next annotation receives: the tools' settings. A change of them is one of the selected
/// annotation too.
class ToolSettings {
public:
    explicit ToolSettings(const CanvasContext& context);

    /// The selected annotation's settings, or else those of the tools.
    [[nodiscard]] TShapeStyle shown() const;
    [[nodiscard]] const TShapeStyle& own() const { return own_; }
    void setOwn(TShapeStyle settings) { own_ = std::move(settings); }

    void change(const std::function<void(TShapeStyle&)>& setting, Gesture& gesture);
    /// Shows or hides a part: a setting like others.
    void showPart(Part part, bool shown);
    /// Makes a style the current one; places stay, and what is visible unless that is asked for.
    void apply(const TShapeStyle& style, bool withVisibility);

    /// A new annotation as that tool makes it, over `rect`, with the next step number; not yet in the capture.
    [[nodiscard]] TBBShape newAnnotation(const Rect& rect, EditTool tool) const;

private:
    void takeFreeNumber(TBBShape& shape) const;

    const CanvasContext& context_;
    TShapeStyle own_;
};

}  // namespace glimmer
