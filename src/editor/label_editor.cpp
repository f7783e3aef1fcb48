#include "editor/label_editor.h"

#include <algorithm>

#include "editor/rich_text_painter.h"
#include "editor/uEditor.h"

namespace glimmer {

void LabelEditor::makeControl() {
    edit_ = new wxTextCtrl();
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
    place();
    edit_->Show();
    edit_->SetFocus();
    edit_->SelectAll();
}

void LabelEditor::end() {
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
    }
    place();
}

void LabelEditor::format() {
    const TBBShape* shape = form_.document().annotations().find(id_);
    if (shape->text.settings == formatted_ && formattedZoom_ == form_.zoom() &&
        labelControlIsAligned(edit_->GetHWND(), formatted_.alignment))
        return;
    formatted_ = shape->text.settings;
    formattedZoom_ = form_.zoom();
    formatLabelControl(edit_->GetHWND(), formatted_, form_.zoom() / 100.0);
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
    // A little wider than the text, so that the control does not wrap where the label does not.
    const wxRect place(area.left, area.top, std::max(area.width(), 24) + 2, std::max(area.height(), 12) + 2);
    if (edit_->GetRect() != place) edit_->SetSize(place);
}

}  // namespace glimmer
