#pragma once

#include "editor/document/content.h"
#include "editor/document/undo.h"

namespace glimmer {

/// Anything about one annotation changes: place, size, text, settings, ink, number. Changes of the same annotation
/// with the same gesture merge: a drag, a slider pull or a stretch of typing is one step.
class ChangeAnnotation final : public UndoCommand {
public:
    /// `changed` has the id of the annotation that it replaces.
    explicit ChangeAnnotation(TBBShape changed) : other_(std::move(changed)) {}
    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override { return apply(content); }
    bool mergeWith(UndoCommand& next) override;
    [[nodiscard]] AnnotationId id() const { return other_.id(); }

private:
    TBBShape other_;  ///< the former annotation while the change is in effect, the changed one while it is undone
};

}  // namespace glimmer
