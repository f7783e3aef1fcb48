#include "main_window/capture_panel.h"

#include <wx/sizer.h>
#include <wx/wupdlock.h>

#include <utility>
#include <variant>

#include "common/wx_text.h"
#include "main_window/capture_list.h"
#include "main_window/list_commands.h"
#include "main_window/output_commands.h"
#include "main_window/selection_panel.h"
#include "settings/message_box.h"

namespace glimmer {

CapturePanel::CapturePanel(wxWindow* parent, CaptureSession& session, Events events)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlLeft"),
      session_(session),
      events_(std::move(events)) {
    makeList();
    labels_ = new SelectionPanel(this, [this](const SelectionPanel::Action& action) {
        if (const ListAction* inList = std::get_if<ListAction>(&action)) act(*inList, session_, *list_);
        if (const OutputCommand* output = std::get_if<OutputCommand>(&action)) events_.output(*output, selected());
    });
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(list_, 1, wxEXPAND);
    column->Add(labels_, 0, wxEXPAND);
    SetSizer(column);
    session.listen(*this);
}

void CapturePanel::makeList() {
    CaptureList::Events events;
    events.shown = [this](size_t place) { session_.show(session_.at(place)); };
    events.selectionChanged = events_.selectionChanged;
    events.renamed = [this](size_t place, const wxString& name) { rename(place, name); };
    events.moved = [this](size_t from, size_t to) { session_.move(from, to); };
    events.menu = [this](const wxPoint& screen) {
        const auto save = [this](CaptureDocument& capture) { events_.output(saveCaptures, {&capture}); };
        showActionsMenu(session_, *list_, screen, save);
    };
    events.deletePressed = [this] { act(ListAction::DeleteSelected, session_, *list_); };
    list_ = new CaptureList(this, std::move(events));
}

void CapturePanel::complete() {
    const wxWindowUpdateLocker atOnce(this);
    list_->Show();
    labels_->fill();
}

Captures CapturePanel::selected() const {
    Captures chosen = selectedIn(*list_, session_);
    if (chosen.empty() && session_.current() != nullptr) chosen.push_back(session_.current());
    return chosen;
}

void CapturePanel::rename(size_t place, const wxString& name) {
    if (place >= session_.size()) return;
    const Status renamed = session_.rename(session_.at(place), name.ToStdString(wxConvUTF8));
    if (!renamed) showError(renamed.message());
}

void CapturePanel::captureAdded(size_t place) {
    list_->append(wxText(session_.at(place).info().name));
    list_->setCurrent(place, true);
}

void CapturePanel::captureRemoved(size_t place, const CaptureDocument& /*capture*/) { list_->erase(place); }

void CapturePanel::captureMoved(size_t from, size_t to) {
    list_->move(from, to);
    list_->setCurrent(to, true);
}

void CapturePanel::captureChanged(const CaptureDocument& capture, const DocumentChange& change) {
    if (change.info) list_->setName(session_.placeOf(capture), wxText(capture.info().name));
}

void CapturePanel::currentStays() {
    if (session_.current() != nullptr) list_->setCurrent(session_.placeOf(*session_.current()), true);
}

}  // namespace glimmer
