#include "editor/window/label_editor.h"

#include <wx/msw/wrapwin.h>
#include <wx/textctrl.h>
// After what it needs.
#include <imm.h>

#include <algorithm>

#include "common/system_library.h"
#include "editor/labels/label_control.h"
#include "editor/window/editing_form.h"

namespace glimmer {

/// A rich edit that knows when an input method is at work in it. The input method says so by messages; older ones are
/// asked for what they have composed so far.
class LabelEditor::Control : public wxTextCtrl {
public:
    [[nodiscard]] bool composing() const { return composing_ || composedSoFar(); }

    /// What is being composed becomes text as it stands.
    void endComposition() {
        static const auto notify = systemFunction<decltype(&ImmNotifyIME)>(L"imm32.dll", "ImmNotifyIME");
        if (notify == nullptr || !composing()) return;
        withContext([](HIMC context) { return notify(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0) != FALSE; });
        composing_ = false;
    }

protected:
    WXLRESULT MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) override {
        // Shift+Enter ends a line as Enter does; the control would put a sign of its own there.
        if (wParam == VK_RETURN && (message == WM_KEYDOWN || message == WM_CHAR) && GetKeyState(VK_SHIFT) < 0) {
            if (message == WM_KEYDOWN) WriteText("\n");
            return 0;
        }
        if (message == WM_IME_STARTCOMPOSITION) composing_ = true;
        const WXLRESULT answer = wxTextCtrl::MSWWindowProc(message, wParam, lParam);
        if (message == WM_IME_ENDCOMPOSITION || message == WM_KILLFOCUS) composing_ = false;
        return answer;
    }

private:
    template <class Action>
    bool withContext(Action action) const {
        static const auto get = systemFunction<decltype(&ImmGetContext)>(L"imm32.dll", "ImmGetContext");
        static const auto release = systemFunction<decltype(&ImmReleaseContext)>(L"imm32.dll", "ImmReleaseContext");
        const HIMC context = get == nullptr || release == nullptr ? nullptr : get(GetHWND());
        if (context == nullptr) return false;
        const bool answer = action(context);
        release(GetHWND(), context);
        return answer;
    }
    [[nodiscard]] bool composedSoFar() const {
        static const auto ask =
            systemFunction<decltype(&ImmGetCompositionStringW)>(L"imm32.dll", "ImmGetCompositionStringW");
        return ask != nullptr && withContext([](HIMC context) { return ask(context, GCS_COMPSTR, nullptr, 0) > 0; });
    }

    bool composing_ = false;
};

LabelEditor::LabelEditor(EditingForm& form, wxWindow* canvas) : form_(form), canvas_(canvas) {
    tmrEditingAnnotation_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { takeText(); });
}

bool LabelEditor::owns(const wxWindow* window) const { return edit_ != nullptr && window == edit_; }

bool LabelEditor::composing() const { return edit_ != nullptr && edit_->composing(); }

void LabelEditor::makeControl() {
    edit_ = new Control();
    edit_->Hide();
    edit_->Create(canvas_, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                  wxTE_MULTILINE | wxTE_RICH2 | wxTE_NO_VSCROLL | wxBORDER_NONE, wxDefaultValidator,
                  "edtAnnotationEdit");
    prepareLabelControl(edit_->GetHWND());
    edit_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { takeText(); });
    edit_->Bind(wxEVT_MOUSEWHEEL, [this](wxMouseEvent& event) { canvas_->GetEventHandler()->ProcessEvent(event); });
}

void LabelEditor::begin(AnnotationId id) {
    const TBBShape* shape = form_.document().annotations().find(id);
    if (shape == nullptr) return;
    if (edit_ == nullptr) makeControl();
    id_ = id;
    known_ = shape->text.text;
    formattedZoom_ = 0;
    setLabelControlText(edit_->GetHWND(), known_);
    form_.reveal(shape->text.rectangle.normalized());
    place();
    edit_->Show();
    edit_->SetFocus();
    edit_->SelectAll();
    constexpr int interval = 500;  // milliseconds
    tmrEditingAnnotation_.Start(interval);
}

void LabelEditor::end() {
    tmrEditingAnnotation_.Stop();
    edit_->endComposition();
    takeText();
    id_ = noAnnotation;
    const bool focused = edit_->HasFocus();
    edit_->Hide();
    edit_->ChangeValue("");
    if (focused) edit_->GetParent()->SetFocus();
}

void LabelEditor::takeText() {
    if (id_ == noAnnotation) return;
    const std::string text = labelControlText(edit_->GetHWND());
    if (text != known_) {
        known_ = text;
        form_.controller().textEdited(id_, text);
        // It has grown, maybe out of what is seen.
        if (const TBBShape* shape = form_.document().annotations().find(id_))
            form_.reveal(shape->text.rectangle.normalized());
    }
    place();
}

void LabelEditor::format() {
    const TBBShape* shape = form_.document().annotations().find(id_);
    // Formatting selects, which would break off what an input method composes; the timer comes back to it.
    if (edit_->composing()) return;
    const HWND control = edit_->GetHWND();
    if (shape->text.settings == formatted_ && formattedZoom_ == form_.zoom() &&
        labelControlIsAligned(control, formatted_.alignment) && !labelControlIsZoomed(control))
        return;
    formatted_ = shape->text.settings;
    formattedZoom_ = form_.zoom();
    formatLabelControl(control, formatted_, form_.zoom() / 100.0);
}

void LabelEditor::place() {
    if (id_ == noAnnotation) return;
    const TBBShape* shape = form_.document().annotations().find(id_);
    if (shape == nullptr) {
        form_.finishEditing();
        return;
    }
    format();
    const Rect area = form_.inView(TTextObject::textArea(shape->text.rectangle.normalized()));
    const Size text = {std::max(area.width(), 24), std::max(area.height(), 12)};
    const wxRect place(area.left, area.top, text.width + labelControlSlack, text.height + labelControlSlack);
    if (edit_->GetRect() == place) return;
    edit_->SetSize(place);
    // In its own size the text wraps as the label does. Letters of other sizes are not wider in exactly that
    // proportion: they have all the room, so that the control does not wrap where the label does not.
    const int32_t room = form_.zoom() == 100 ? 0 : labelControlSlack;
    setLabelControlArea(edit_->GetHWND(), {text.width + room, text.height});
}

}  // namespace glimmer
