#pragma once

#include <utility>
#include <vector>

#include "editor/document/content.h"
#include "editor/document/undo.h"

namespace glimmer {

/// The step numbers of several annotations become others ("Renumber...", "Reorder...").
class ChangeNumbers final : public UndoCommand {
public:
    using Numbers = std::vector<std::pair<AnnotationId, int32_t>>;
    explicit ChangeNumbers(Numbers numbers) : other_(std::move(numbers)) {}
    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override { return apply(content); }

private:
    Numbers other_;
};

}  // namespace glimmer
