#pragma once

#include "editor/document/content.h"
#include "editor/document/undo.h"

namespace glimmer {

/// A new annotation on top of the others. Changes made with the same gesture, as while it is drawn with the mouse,
/// become part of this step.
class AddAnnotation final : public UndoCommand {
public:
    explicit AddAnnotation(TBBShape shape) : shape_(std::move(shape)) {}
    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override;
    bool mergeWith(UndoCommand& next) override;

private:
    TBBShape shape_;
};

}  // namespace glimmer
