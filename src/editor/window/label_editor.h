#pragma once

#include <wx/timer.h>
#include <wx/window.h>

#include "editor/document/content.h"

namespace glimmer {

class EditingForm;

/// The in-place editor of a label (`edtAnnotationEdit`): a rich edit over the label's place, in the label's font and
/// colours. What is typed goes to the capture at once; the label, and with it this window, grows with the text. The
/// window is made for the first label.
class LabelEditor {
public:
    LabelEditor(EditingForm& form, wxWindow* canvas);
    /// The form's children are about to go.
    void stop() { tmrEditingAnnotation_.Stop(); }

    /// Shows the editor over that annotation's label, all text selected.
    void begin(AnnotationId id);
    /// Hides it; what was typed is in the capture already.
    void end();
    /// The annotation that is being edited, or noAnnotation.
    [[nodiscard]] AnnotationId annotation() const { return id_; }
    [[nodiscard]] bool IsShown() const { return id_ != noAnnotation; }
    [[nodiscard]] bool owns(const wxWindow* window) const;
    /// An input method is composing a character in it: all keys are the input method's.
    [[nodiscard]] bool composing() const;
    /// Brings the window to the label's place at the current zoom.
    void place();

private:
    class Control;
    void makeControl();
    void takeText();
    void format();

    EditingForm& form_;
    wxWindow* canvas_;
    Control* edit_ = nullptr;
    AnnotationId id_ = noAnnotation;
    std::string known_;        ///< text as the capture has it
    TTextSettings formatted_;  ///< what the window was last formatted as
    int32_t formattedZoom_ = 0;
    wxTimer tmrEditingAnnotation_;  ///< takes over, while editing, what came without a message (dead keys)
};

}  // namespace glimmer
