#pragma once

namespace glimmer {

/// How the kinds of shapes are offered, in the order of their tags from 1 on.
struct ShapeKindCaption {
    const char* button;
    const char* icon;
    const char* caption;
};
constexpr ShapeKindCaption shapeKinds[] = {
    {"tbtnShowRectFilled", "kind-rectangle-filled", "Filled rectangle"},
    {"tbtnShowRect", "kind-rectangle", "Rectangle"},
    {"tbtnShowEllipseFilled", "kind-ellipse-filled", "Filled ellipse"},
    {"tbtnShowEllipse", "kind-ellipse", "Ellipse"},
    {"tbtnShowDrawing", "pen", "Drawing"},
};

/// The same for the ends of lines.
struct LineEndCaption {
    const char* icon;
    const char* caption;
};
constexpr LineEndCaption lineEnds[] = {
    {"line-end-none", "None"}, {"line-end-arrow", "Arrow"}, {"line-end-bullet", "Bullet"}};

}  // namespace glimmer
