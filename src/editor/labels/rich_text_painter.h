#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "editor/labels/label_control.h"
#include "editor/labels/label_drawing.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

/// The ways of drawing labels and which of them serves. That is found out with the first label and holds for all
/// painters that share the choice: those of the process, unless a test has its own.
struct LabelDrawingChoice {
    static constexpr int unknown = -1;
    static constexpr int none = -2;  ///< none draws anything; each label tries all of them
    std::function<LabelDrawings(const LabelControl&)> make = [](const LabelControl& c) { return allLabelDrawings(c); };
    std::atomic<int> way = unknown;  ///< index among what `make` makes
    std::atomic<bool> told = false;  ///< a label without a pixel was reported
};

/// Text by a rich edit control that is never shown (`edtAnnotationForPainting`): it measures as the in-place editor
/// wraps, and draws, or has the same control without a window draw (label_drawing.h). Many captures have no text, and
/// such a control takes time to make: it is made when the first text comes.
class RichTextPainter : public TextPainter {
public:
    /// With a hidden control of its own. The thread needs no window of its own, but user-interface rights.
    RichTextPainter();
    /// With a control that `makeControl` makes and somebody else keeps alive; it is used for painting only.
    explicit RichTextPainter(LabelControl makeControl);
    RichTextPainter(LabelControl makeControl, LabelDrawingChoice& choice);
    ~RichTextPainter() override;

    Size measure(const TTextSettings& font, const std::string& text, int32_t width) override;
    /// The control, formatted for the last request.
    [[nodiscard]] HWND control();

protected:
    /// Throws AssertionFailure, once, when no way draws a text that must be seen and the option "Debug mode" is on.
    TextMask render(const TTextSettings& font, const std::string& text, Size area) override;

private:
    HWND ownControl();
    std::wstring withLongWordsBroken(const TTextSettings& font, const std::wstring& text, Size area);
    TextMask draw(LabelDrawing& drawing, const TTextSettings& font, const std::wstring& text, Size area);
    int findWay();
    bool mustBeSeen(const TTextSettings& font, const std::wstring& text, Size area);

    LabelControl makeControl_;  ///< none: all is done with the control of its own
    LabelDrawingChoice& choice_;
    LabelDrawings drawings_;
    HWND control_ = nullptr;
    HWND ownControl_ = nullptr;
};

}  // namespace glimmer
