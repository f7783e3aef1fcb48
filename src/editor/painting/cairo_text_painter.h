#pragma once

#include <memory>

#include "editor/painting/text_painter.h"

namespace glimmer {

/// Text by cairo's own fonts: lines break after blanks, and inside a word only when it is wider than the line.
/// Serves wherever there is no rich edit control to agree with: tests, benchmarks, tools.
class CairoTextPainter : public TextPainter {
public:
    CairoTextPainter();
    ~CairoTextPainter() override;

    Size measure(const TTextSettings& font, const std::string& text, int32_t width) override;

protected:
    TextMask render(const TTextSettings& font, const std::string& text, Size area) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace glimmer
