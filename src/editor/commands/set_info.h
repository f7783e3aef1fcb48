#pragma once

#include <string>

#include "editor/document/content.h"
#include "editor/document/undo.h"

namespace glimmer {

/// The capture's name or notes become another text; typing merges into one step.
class SetInfo final : public UndoCommand {
public:
    enum class Field : uint8_t { Name, Notes };

    SetInfo(Field field, std::string text) : field_(field), other_(std::move(text)) {}

    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override { return apply(content); }
    bool mergeWith(UndoCommand& next) override;
    [[nodiscard]] size_t byteCount() const override { return other_.capacity(); }

private:
    Field field_;
    std::string other_;
};

}  // namespace glimmer
