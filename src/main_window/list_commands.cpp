#include "main_window/list_commands.h"

#include <wx/menu.h>

#include <algorithm>
#include <string>
#include <utility>

#include "main_window/capture_list.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

/// Closes these captures if the user, who is asked, wants it.
void deleteCaptures(CaptureSession& session, const Captures& captures) {
    if (captures.empty()) return;
    const auto unsaved = std::count_if(captures.begin(), captures.end(),
                                       [](const CaptureDocument* capture) { return capture->modified(); });
    Message question;
    question.caption = "Delete captures";
    question.icon = MessageIcon::Question;
    question.buttons = MessageButtons::YesNo;
    if (captures.size() == 1) {
        question.text = "Delete the capture \"";
        question.text.append(captures[0]->info().name).append("\"?");
    } else {
        question.text = "Delete ";
        question.text.append(std::to_string(captures.size())).append(" captures?");
    }
    if (unsaved == 1) {
        question.text += "\nIt has changes that are not saved.";
    } else if (unsaved > 1) {
        question.text.append("\n").append(std::to_string(unsaved)).append(" of them have changes that are not saved.");
    }
    // The session may end while the question is on the screen; of captures that are gone it knows nothing then.
    if (showRemembered("cmbDeleteCaptures", question) == MessageAnswer::Yes) session.remove(captures);
}

Captures others(const CaptureSession& session) {
    Captures others = session.all();
    std::erase(others, session.current());
    return others;
}

}  // namespace

Captures selectedIn(const CaptureList& list, const CaptureSession& session) {
    Captures chosen;
    for (const size_t place : list.selected())
        if (place < session.size()) chosen.push_back(&session.at(place));
    return chosen;
}

void act(ListAction action, CaptureSession& session, CaptureList& list) {
    const auto isCurrent = [&session](size_t place) { return &session.at(place) == session.current(); };
    switch (action) {
        case ListAction::SelectAll:
            return list.select([](size_t) { return true; });
        case ListAction::SelectCurrent:
            return list.select(isCurrent);
        case ListAction::SelectOther:
            return list.select([&isCurrent](size_t place) { return !isCurrent(place); });
        case ListAction::DeleteSelected:
            return deleteCaptures(session, selectedIn(list, session));
        case ListAction::DeleteAll:
            return deleteCaptures(session, session.all());
        case ListAction::DeleteOther:
            return deleteCaptures(session, others(session));
    }
}

void showActionsMenu(CaptureSession& session, CaptureList& list, const wxPoint& screen,
                     const std::function<void(CaptureDocument&)>& save) {
    if (session.current() == nullptr) return;
    wxMenu menu;
    const auto add = [&menu](const char* caption, std::function<void()> action) {
        wxMenuItem* item = menu.Append(wxID_ANY, caption);
        menu.Bind(
            wxEVT_MENU, [action = std::move(action)](wxCommandEvent&) { action(); }, item->GetId());
    };
    const auto addAction = [&](const char* caption, ListAction action) {
        add(caption, [&session, &list, action] { act(action, session, list); });
    };
    const size_t place = session.placeOf(*session.current());
    add("Save as...", [&, place] {
        if (place >= session.size()) return;  // the menu may outlast captures
        list.setCurrent(place, true);
        save(session.at(place));
    });
    add("Rename...", [&list, place] { list.editName(place); });
    menu.AppendSeparator();
    addAction("Select All", ListAction::SelectAll);
    addAction("Select All Except current", ListAction::SelectOther);
    menu.AppendSeparator();
    addAction("Delete Selected", ListAction::DeleteSelected);
    addAction("Delete All", ListAction::DeleteAll);
    addAction("Delete All Except current", ListAction::DeleteOther);
    list.PopupMenu(&menu, list.ScreenToClient(screen));
}

}  // namespace glimmer
