#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editor/labels/text_services.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

/// One way of having a rich edit draw a label. Which of them draw depends on the system, and those that do not say
/// nothing about it: whoever uses them looks at the pixels.
class LabelDrawing {
public:
    LabelDrawing() = default;
    virtual ~LabelDrawing() = default;
    LabelDrawing(const LabelDrawing&) = delete;
    LabelDrawing& operator=(const LabelDrawing&) = delete;
    LabelDrawing(LabelDrawing&&) = delete;
    LabelDrawing& operator=(LabelDrawing&&) = delete;

    /// Lays the text out in the area's width, aligned and wrapped as layOutLabel() does it, and draws it in black onto
    /// the context, which is white, from its origin on.
    virtual void draw(const TTextSettings& font, const std::wstring& text, Size area, HDC dc) = 0;
};

using LabelDrawings = std::vector<std::unique_ptr<LabelDrawing>>;

/// A control that is there when it is asked for; null when the system has none.
using LabelControl = std::function<HWND()>;

/// All ways, in the order in which they are to be tried:
/// - text services without a window (ITextServices::TxDraw), whose layout is that of the screen;
/// - `control` told to format its text for a device (EM_FORMATRANGE), which is documented for every rich edit;
/// - `control` told to print itself (WM_PRINTCLIENT), which no documentation promises.
LabelDrawings allLabelDrawings(const LabelControl& control, MakeTextServices makeTextServices = nullptr);

/// Sizes the control and lays a label out in it, in black. The text's long words are broken already.
void layOutLabel(HWND control, const TTextSettings& font, const std::wstring& text, Size area);

}  // namespace glimmer
