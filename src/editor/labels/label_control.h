#pragma once

#include <windows.h>

#include <string>

#include "common/geometry.h"
#include "editor/annotations/shape_settings.h"

class ITextServices;

namespace glimmer {

// A label looks the same whether it is painted or being edited since one kind of control does both: a rich edit
// (class RICHEDIT50W) with the same format and the same width. These functions give any such control a label's form;
// the in-place editor uses them, and so does the painter.

/// What takes a rich edit's messages: a control's window, or the same control without a window.
class RichEdit {
public:
    RichEdit(HWND window) : window_(window) {}  // NOLINT(google-explicit-constructor): a window of that class is one
    explicit RichEdit(ITextServices& services) : services_(&services) {}

    /// 0 where the control does not answer.
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;  // NOLINT(modernize-use-nodiscard)
    template <class Structure>
    LRESULT send(UINT message, WPARAM wParam, Structure* structure) const {  // NOLINT(modernize-use-nodiscard)
        return send(message, wParam, reinterpret_cast<LPARAM>(structure));
    }

private:
    HWND window_ = nullptr;
    ITextServices* services_ = nullptr;
};

/// Without a parent and never shown; null when the system has no rich edit.
HWND createLabelControl();

/// Makes a rich edit ready for labels: plain text, no blank margins, no undo of its own, as much text as a label may
/// have. Once, after it was created.
void prepareLabelControl(const RichEdit& edit);
/// Font, colours and alignment of the whole text, for a label shown at `zoom` times its size, whatever zoom the control
/// had of its own. Keeps the selection.
void formatLabelControl(const RichEdit& edit, const TTextSettings& settings, double zoom = 1);
/// Whether the control has a zoom of its own. Toolkits give it one when its window comes to a monitor with another
/// scaling; a label's pixels are the picture's and know of no monitor.
bool labelControlIsZoomed(const RichEdit& edit);
/// Whether the paragraph at the caret has that alignment; replacing all text can lose it.
bool labelControlIsAligned(const RichEdit& edit, TextAlignment alignment);
/// A control may keep some pixels of its window for itself; a window that is this much wider has room for all of its
/// text.
constexpr int32_t labelControlSlack = 2;
/// Text is wrapped at exactly that width in pixels, from the window's top left corner. After each change of the
/// window's size, which is to be larger by the slack.
void setLabelControlArea(HWND richEdit, Size area);
/// Replaces the text; lines end in "\n". Never read as RTF.
void setLabelControlText(const RichEdit& edit, const std::string& text);
void setLabelControlText(const RichEdit& edit, std::wstring text);
/// The text; a line ends in "\n", whichever way it was ended.
std::string labelControlText(const RichEdit& edit);
/// The text as the control takes it: UTF-16, no 0 in it.
std::wstring labelControlUnits(const std::string& text);

}  // namespace glimmer
