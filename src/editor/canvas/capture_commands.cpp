#include "editor/canvas/capture_commands.h"

#include <optional>

#include "common/assertion.h"
#include "editor/commands/change_numbers.h"
#include "editor/commands/change_order.h"
#include "editor/commands/crop_picture.h"
#include "editor/commands/draw_operation.h"
#include "imaging/pixel_operation.h"

namespace glimmer {

namespace {

/// The selected area as the operations take it: a rectangle or an ellipse, or else a region.
struct OperationArea {
    std::optional<Region> region;
    PixelSelection framed;
    [[nodiscard]] const Region* free() const { return region ? &*region : nullptr; }
};

OperationArea areaOf(const CaptureDocument& document) {
    const Selection& selection = document.selection();
    OperationArea area;
    if (selection.kind != Selection::Kind::Rectangle && selection.kind != Selection::Kind::Ellipse) {
        area.region = selection.pixels(document.size());
        return area;
    }
    // The operations count the right and bottom pixels as inside.
    area.framed.rectangle = {selection.rect.left, selection.rect.top, selection.rect.right - 1,
                             selection.rect.bottom - 1};
    if (selection.kind == Selection::Kind::Ellipse) area.framed.outline = PixelSelection::Outline::ellipse;
    return area;
}

Result<TPixelOperation> makeOperation(const CaptureDocument& document, EditCommand command, Colour colour,
                                      int32_t intensity) {
    const TBitmap& image = document.background();
    const OperationArea area = areaOf(document);
    const auto effect = [&](PixelOperationKind kind) {
        return applyEffect(static_cast<int32_t>(kind), image, area.free(), &area.framed, intensity);
    };
    switch (command) {
        case EditCommand::Fill:
            return makeFill(image, area.free(), &area.framed, colour);
        case EditCommand::Glow:
            return makeGlow(image, area.free(), &area.framed, colour);
        case EditCommand::Blur:
            return effect(PixelOperationKind::blur);
        case EditCommand::Grayscale:
            return effect(PixelOperationKind::grayscale);
        case EditCommand::Invert:
            return effect(PixelOperationKind::invert);
        case EditCommand::Interlace:
            return effect(PixelOperationKind::interlace);
        default:
            GLIMMER_ASSERT(false, "1 == 2", "uEditor");
    }
    return Failure{};
}

}  // namespace

bool operateOnPixels(const CanvasContext& context, EditCommand operation, Colour colour, int32_t intensity) {
    GLIMMER_ASSERT(!context.document.selection().empty(), "pSelection != NULL", "uEditor");
    Result<TPixelOperation> made = makeOperation(context.document, operation, colour, intensity);
    if (!made) {
        context.host.failed(made.message());
        return false;
    }
    return context.run(std::make_unique<DrawOperation>(made.take()));
}

bool cropToSelection(const CanvasContext& context) {
    const Rect area = context.document.selection().bounds(context.document.size());
    if (area.empty() || !context.run(std::make_unique<CropPicture>(area))) return false;
    context.document.select({});
    return true;
}

bool invertSelection(const CanvasContext& context) {
    CaptureDocument& document = context.document;
    document.selectAnnotation(noAnnotation);
    document.select(
        Selection::freeForm(document.selection().pixels(document.size()).invertedWithin(context.picture())));
    return true;
}

bool bringToEnd(const CanvasContext& context, bool front) {
    const CaptureDocument& document = context.document;
    const size_t place = front ? document.annotations().size() - 1 : 0;
    if (document.annotations().indexOf(document.selectedId()) == place) return true;
    return context.run(std::make_unique<ChangeOrder>(document.selectedId(), place));
}

bool stepHistory(const CanvasContext& context, bool forward) {
    CaptureDocument& document = context.document;
    const Size before = document.size();
    const Status stepped = forward ? document.redo() : document.undo();
    if (!stepped) context.host.failed(stepped.message());
    if (document.size() != before) document.select({});
    return true;
}

bool renumber(const CanvasContext& context) {
    TShapesList renumbered = context.document.annotations();
    renumbered.renumber();
    std::vector<std::pair<AnnotationId, int32_t>> numbers;
    for (const TBBShape& shape : renumbered) numbers.emplace_back(shape.id(), shape.number.number);
    return setNumbers(context, numbers);
}

bool setNumbers(const CanvasContext& context, const std::vector<std::pair<AnnotationId, int32_t>>& numbers) {
    ChangeNumbers::Numbers changed;
    for (const auto& [id, number] : numbers) {
        const TBBShape* shape = context.document.annotations().find(id);
        if (shape != nullptr && shape->number.number != number) changed.emplace_back(id, clampStepNumber(number));
    }
    return !changed.empty() && context.run(std::make_unique<ChangeNumbers>(std::move(changed)));
}

bool insertAnnotations(const CanvasContext& context, std::vector<TBBShape> shapes, Point shift) {
    Gesture together = context.document.beginGesture();
    bool added = false;
    for (TBBShape& shape : shapes) {
        shape.setId(noAnnotation);
        shape.moveBy(shift.x, shift.y);
        added |= context.add(std::move(shape), together);
    }
    context.document.select({});
    if (const TBBShape* last = context.document.selectedAnnotation()) context.host.reveal(last->bounds());
    return added;
}

}  // namespace glimmer
