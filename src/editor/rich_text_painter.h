#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "editor/text_painter.h"

namespace glimmer {

// A label looks the same whether it is painted or being edited since one kind of control does both: a rich edit
// (class RICHEDIT50W) with the same format and the same width. These functions give any such control a label's form;
// the in-place editor uses them, and so does the painter below.

/// Makes a rich edit ready for labels: plain text, no blank margins, no undo of its own, as much text as a label may
/// have. Once, after it was created.
void prepareLabelControl(HWND richEdit);
/// Font, colours and alignment of the whole text, for a label shown at `zoom` times its size. Keeps the selection.
void formatLabelControl(HWND richEdit, const TTextSettings& settings, double zoom = 1);
/// Whether the paragraph at the caret has that alignment; replacing all text can lose it.
bool labelControlIsAligned(HWND richEdit, TextAlignment alignment);
/// Replaces the text; lines end in "\n". Never read as RTF.
void setLabelControlText(HWND richEdit, const std::string& text);
std::string labelControlText(HWND richEdit);

/// Text by a rich edit control that is never shown (`edtAnnotationForPainting`). Many captures have no text, and such a
/// control takes time to make: it is made when the first text comes.
class RichTextPainter : public TextPainter {
public:
    /// With a hidden control of its own. The thread needs no window of its own, but user-interface rights.
    RichTextPainter();
    /// With a control that `makeControl` makes and somebody else keeps alive; it is used for painting only.
    explicit RichTextPainter(std::function<HWND()> makeControl);
    ~RichTextPainter() override;

    Size measure(const TTextSettings& font, const std::string& text, int32_t width) override;
    /// The control, formatted for the last request.
    [[nodiscard]] HWND control();

protected:
    TextMask render(const TTextSettings& font, const std::string& text, Size area) override;

private:
    void layOut(const TTextSettings& font, const std::wstring& text, Size area);
    std::wstring withLongWordsBroken(const std::wstring& text);

    std::function<HWND()> makeControl_;
    HWND control_ = nullptr;
    bool owned_ = false;
};

}  // namespace glimmer
