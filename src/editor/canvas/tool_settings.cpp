#include "editor/canvas/tool_settings.h"

#include <algorithm>
#include <utility>

namespace glimmer {

ToolSettings::ToolSettings(const CanvasContext& context) : context_(context), own_(*predefinedStyle("Default")) {}

TShapeStyle ToolSettings::shown() const {
    const TBBShape* shape = context_.document.selectedAnnotation();
    return shape == nullptr ? own_ : shape->settings();
}

void ToolSettings::change(const std::function<void(TShapeStyle&)>& setting, Gesture& gesture) {
    setting(own_);
    clampSettings(own_);
    const TBBShape* selected = context_.document.selectedAnnotation();
    if (selected == nullptr) return;
    TShapeStyle style = selected->settings();
    setting(style);
    clampSettings(style);
    // Ink stays ink: only free drawing makes a picture.
    if (style.shape.kind == ShapeKind::Drawing && selected->shape.drawing == nullptr)
        style.shape.kind = selected->shape.settings.kind;
    TBBShape shape = *selected;
    shape.setSettings(style);
    fitChangedLabel(*selected, shape, context_.host.textPainter());
    if (shape.number.isVisible() && !selected->number.isVisible()) takeFreeNumber(shape);
    context_.change(std::move(shape), gesture);
}

void ToolSettings::showPart(Part part, bool shown) {
    Gesture alone;
    const auto show = [&](TShapeStyle& style) {
        bool* const visible[] = {&style.shape.visible, &style.text.visible, &style.line.visible, &style.number.visible};
        *visible[static_cast<size_t>(part)] = shown;
    };
    change(show, alone);
}

void ToolSettings::apply(const TShapeStyle& style, bool withVisibility) {
    const TShapeStyle former = std::exchange(own_, style);
    own_.keepPlacesOf(former, withVisibility);
    const TBBShape* selected = context_.document.selectedAnnotation();
    if (selected == nullptr) return;
    TBBShape shape = *selected;
    shape.applyStyle(style, withVisibility);
    fitChangedLabel(*selected, shape, context_.host.textPainter());
    context_.change(std::move(shape));
}

/// A number that appears: its own, unless that is another one's already or would leave a gap; then the next one.
void ToolSettings::takeFreeNumber(TBBShape& shape) const {
    int32_t last = 0;
    bool taken = false;
    for (const TBBShape& other : context_.document.annotations()) {
        if (other.id() == shape.id() || !other.number.isVisible()) continue;
        last = std::max(last, other.number.number);
        taken |= other.number.number == shape.number.number;
    }
    if (taken || shape.number.number > last + 1) shape.number.number = clampStepNumber(last + 1);
}

TBBShape ToolSettings::newAnnotation(const Rect& rect, EditTool tool) const {
    TShapeStyle style = own_;
    if (style.shape.kind == ShapeKind::Drawing) style.shape.kind = ShapeKind::FilledRectangle;
    const auto show = [&style](bool shape, bool text, bool line) {
        style.shape.visible = shape;
        style.text.visible = text;
        style.line.visible = line;
    };
    switch (tool) {
        case EditTool::TextLine:
            show(false, true, true);
            break;
        case EditTool::Text:
            show(false, true, false);
            break;
        case EditTool::RectHighlight:
            show(true, false, false);
            style.shape.kind = ShapeKind::FilledRectangle;
            break;
        case EditTool::Line:
            show(false, false, true);
            break;
        default:
            break;
    }
    TBBShape shape(style, rect);
    shape.number.number = context_.document.annotations().nextNumber();
    if (shape.number.isVisible()) takeFreeNumber(shape);
    fitLabel(shape, context_.host.textPainter());
    return shape;
}

}  // namespace glimmer
