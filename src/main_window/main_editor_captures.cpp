// The main editor's list of captures: adding, showing, renaming, reordering, deleting; thumbnails; what rests.

#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/sizer.h>

#include <algorithm>
#include <chrono>
#include <new>

#include "common/host_kind.h"
#include "common/inside_modal.h"
#include "common/text.h"
#include "common/wx_text.h"
#include "editor/commands/set_info.h"
#include "editor/document/document.h"
#include "editor/painting/display_options.h"
#include "editor/recovery/recovery_keeper.h"
#include "editor/window/uEditor.h"
#include "main_window/capture_list.h"
#include "main_window/main_toolbar.h"
#include "main_window/selection_panel.h"
#include "main_window/thumb_creator.h"
#include "main_window/uMainEditor.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

namespace {

/// A round of thumbnails ends after this time, so that nobody notices it.
constexpr std::chrono::milliseconds thumbnailBudget{12};
/// A capture that changes is left in peace, and its drag has the processor for itself.
constexpr std::chrono::milliseconds thumbnailRest{400};
constexpr size_t longestName = 200;

std::string notEnoughMemory(const CaptureDocument& document) {
    return "There is not enough memory to show \"" + document.info().name + "\".";
}

const char* buttonOf(EditTool tool) {
    switch (tool) {
        case EditTool::Pointer:
            return "btnPointer";
        case EditTool::WindowSelector:
            return "btnWndSelector";
        case EditTool::TextShapeRectangle:
        case EditTool::TextShapeEllipse:
        case EditTool::TextShapePolygon:
            return "btnTextShape";
        case EditTool::TextPen:
            return "btnTextPen";
        case EditTool::TextLine:
            return "btnTextLine";
        case EditTool::Text:
            return "btnText";
        case EditTool::RectHighlight:
            return "btnRectHightlight";
        case EditTool::Line:
            return "btnLine";
    }
    return "btnPointer";
}

Colour systemColour(wxSystemColour which) {
    const wxColour colour = wxSystemSettings::GetColour(which);
    return rgb(colour.Red(), colour.Green(), colour.Blue());
}

}  // namespace

size_t TMainEditor::placeOf(const CaptureDocument& document) const {
    const auto at = std::find_if(documents_.begin(), documents_.end(),
                                 [&document](const Entry& entry) { return entry.document.get() == &document; });
    return static_cast<size_t>(at - documents_.begin());
}

CaptureDocument& TMainEditor::addEditor(std::unique_ptr<CaptureDocument> document) {
    return addDocument(std::move(document));
}

CaptureDocument& TMainEditor::addDocument(std::unique_ptr<CaptureDocument> document,
                                          std::optional<RecoveryStore::Entry> former) {
    CaptureDocument& added = *document;
    Entry entry;
    entry.observer = added.observe([this, &added](const DocumentChange& change) {
        if (change.pixels || change.annotations || change.size || change.state || change.info) {
            Entry& changed = documents_[placeOf(added)];
            changed.thumbnailStale = true;
            changed.changedAt = std::chrono::steady_clock::now();
            if (thumbnailInWork_ && &thumbnailInWork_->document() == &added) thumbnailInWork_.reset();
        }
        if (change.info) list_->setName(placeOf(added), wxText(added.info().name));
        stateStale_ = true;
        wakeTimers();
    });
    entry.document = std::move(document);
    documents_.push_back(std::move(entry));
    projectChanged_ = !projectPath_.empty();
    recovery_->add(added, std::move(former));
    wakeTimers();
    list_->append(wxText(added.info().name));
    list_->setCurrent(documents_.size() - 1, true);
    show(documents_.size() - 1);
    return added;  // cppcheck-suppress returnReference ; the list of captures owns it now
}

TMainEditor::Documents TMainEditor::allEditors() const {
    Documents all;
    for (const Entry& entry : documents_) all.push_back(entry.document.get());
    return all;
}

TMainEditor::Documents TMainEditor::selectedEditors() const {
    Documents chosen;
    for (const size_t place : list_->selected())
        if (place < documents_.size()) chosen.push_back(documents_[place].document.get());
    if (chosen.empty() && current_ != nullptr) chosen.push_back(current_);
    return chosen;
}

/// Below whatever waits for the user, nothing is replaced: its answer is for the capture that it was asked for.
bool TMainEditor::mayChangeCanvas() const {
    return canvas_ == nullptr || (opening_ == 0 && commandsRunning_ == 0 && !canvas_->busy() && !insideModal());
}

void TMainEditor::show(size_t place) {
    CaptureDocument& document = *documents_.at(place).document;
    due_ = nullptr;
    if (&document == current_ && canvas_ != nullptr) return;
    if (!mayChangeCanvas()) {
        due_ = &document;
        return;
    }
    if (putOnCanvas(document)) return;
    putBack();
    if (opening_ == 0)
        showError(notEnoughMemory(document));
    else
        due_ = &document;  // once more, and said then, when all files are open
}

/// At a quiet moment: what had to wait for one.
void TMainEditor::showDue() {
    if (due_ != nullptr && mayChangeCanvas()) show(placeOf(*due_));
}

/// False, with nothing changed, when there is no room for the capture's picture.
bool TMainEditor::putOnCanvas(CaptureDocument& document) {
    const auto awake = [&document] {
        try {
            static_cast<void>(document.background());
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    };
    parkOthers(&document);
    if (!awake()) {
        // The room that the one before takes may be what is missing.
        if (current_ == nullptr || !current_->park() || !awake()) return false;
    }
    if (canvas_ == nullptr) {
        canvas_ = new TEditForm(canvasHost_, document);
        canvas_->onChanged([this] { stateStale_ = true; });
        canvas_->onPointerMoved([this] { updateStatus(); });
        canvasHost_->GetSizer()->Add(canvas_, 1, wxEXPAND);
        canvasHost_->Layout();
    } else {
        documents_[placeOf(*current_)].place = canvas_->place();
        canvas_->show(document, documents_[placeOf(document)].place);
    }
    current_ = &document;
    if (&document == due_) due_ = nullptr;
    followTool();
    parkOthers();
    stateStale_ = true;
    return true;
}

/// The list shows again what is on the canvas.
void TMainEditor::putBack() {
    if (current_ != nullptr) list_->setCurrent(placeOf(*current_), true);
    stateStale_ = true;
}

void TMainEditor::unshow() {
    if (canvas_ != nullptr) {
        canvas_->finishEditing();
        canvasHost_->GetSizer()->Detach(canvas_);
        canvas_->Destroy();
    }
    canvas_ = nullptr;
    current_ = nullptr;
    due_ = nullptr;
}

/// The capture behind these places, or the one before them, or none, comes on the canvas before they go.
void TMainEditor::showInsteadOf(const std::vector<size_t>& places) {
    const auto stays = [&places](size_t place) { return !std::binary_search(places.begin(), places.end(), place); };
    for (size_t place = places.front(); place < documents_.size(); ++place)
        if (stays(place) && putOnCanvas(*documents_[place].document)) return;
    for (size_t place = places.front(); place-- > 0;)
        if (putOnCanvas(*documents_[place].document)) return;
    unshow();
}

/// All but the one on the canvas, and that one, give up their addresses.
void TMainEditor::parkOthers(const CaptureDocument* also) {
    for (const Entry& entry : documents_)
        if (entry.document.get() != current_ && entry.document.get() != also) entry.document->park();
}

void TMainEditor::removePlaces(std::vector<size_t> places, bool kept) {
    if (places.empty()) return;
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    thumbnailInWork_.reset();
    const auto goes = [this, &places](const CaptureDocument* document) {
        return document != nullptr && std::binary_search(places.begin(), places.end(), placeOf(*document));
    };
    if (goes(due_)) {
        due_ = nullptr;
        if (!goes(current_)) putBack();
    }
    const bool currentGoes = goes(current_);
    if (currentGoes) showInsteadOf(places);
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
        CaptureDocument& document = *documents_[*place].document;
        document.forget(documents_[*place].observer);
        if (kept)
            recovery_->leave(document);
        else
            recovery_->discard(document);
        list_->erase(*place);
        documents_.erase(documents_.begin() + static_cast<std::ptrdiff_t>(*place));
    }
    if (currentGoes && current_ != nullptr) list_->setCurrent(placeOf(*current_), true);
    // What is opened into the empty window has nothing to do with the project any more.
    if (documents_.empty()) projectPath_.clear();
    projectChanged_ = !projectPath_.empty();
    stateStale_ = true;
}

void TMainEditor::deleteCaptures(std::vector<size_t> places) {
    if (places.empty()) return;
    const auto unsaved = std::count_if(places.begin(), places.end(),
                                       [this](size_t place) { return documents_[place].document->modified(); });
    Message question;
    Documents doomed;
    for (const size_t place : places) doomed.push_back(documents_[place].document.get());
    question.caption = "Delete captures";
    question.icon = MessageIcon::Question;
    question.buttons = MessageButtons::YesNo;
    if (places.size() == 1) {
        question.text = "Delete the capture \"";
        question.text.append(documents_[places[0]].document->info().name).append("\"?");
    } else {
        question.text = "Delete ";
        question.text.append(std::to_string(places.size())).append(" captures?");
    }
    if (unsaved == 1) {
        question.text += "\nIt has changes that are not saved.";
    } else if (unsaved > 1) {
        question.text.append("\n").append(std::to_string(unsaved)).append(" of them have changes that are not saved.");
    }
    if (showRemembered("cmbDeleteCaptures", question) != MessageAnswer::Yes) return;
    // The session may have ended while the question was on the screen.
    places.clear();
    for (size_t place = 0; place < documents_.size(); ++place)
        if (std::find(doomed.begin(), doomed.end(), documents_[place].document.get()) != doomed.end())
            places.push_back(place);
    removePlaces(std::move(places));
}

void TMainEditor::discardAll(bool kept) {
    std::vector<size_t> all(documents_.size());
    for (size_t i = 0; i < all.size(); ++i) all[i] = i;
    unshow();
    removePlaces(std::move(all), kept);
}

void TMainEditor::moveCapture(size_t from, size_t to) {
    if (from >= documents_.size() || to >= documents_.size() || from == to) return;
    Entry entry = std::move(documents_[from]);
    documents_.erase(documents_.begin() + static_cast<std::ptrdiff_t>(from));
    documents_.insert(documents_.begin() + static_cast<std::ptrdiff_t>(to), std::move(entry));
    list_->move(from, to);
    list_->setCurrent(to, true);
    projectChanged_ = !projectPath_.empty();
    stateStale_ = true;
    show(to);
}

// Names need not differ, but each capture has one.
void TMainEditor::renameCapture(size_t place, const wxString& name) {
    const std::string trimmedName = firstUnits(trimmed(name.ToStdString(wxConvUTF8)), longestName);
    if (trimmedName.empty() || place >= documents_.size()) return;
    CaptureDocument& document = *documents_[place].document;
    if (trimmedName == document.info().name) return;
    const Status renamed = document.run(std::make_unique<SetInfo>(SetInfo::Field::Name, trimmedName));
    if (!renamed) showError(renamed.message());
}

void TMainEditor::onLabel(std::string_view control) {
    const size_t currentPlace = current_ != nullptr ? placeOf(*current_) : 0;
    std::vector<size_t> others;
    std::vector<size_t> all;
    for (size_t i = 0; i < documents_.size(); ++i) {
        all.push_back(i);
        if (i != currentPlace) others.push_back(i);
    }
    if (control == "lblSelectAll") {
        list_->select([](size_t) { return true; });
    } else if (control == "lblSelectCurrent") {
        list_->select([currentPlace](size_t place) { return place == currentPlace; });
    } else if (control == "lblSelectOther") {
        list_->select([currentPlace](size_t place) { return place != currentPlace; });
    } else if (control == "lblDeleteSelected") {
        deleteCaptures(list_->selected());
    } else if (control == "lblDeleteAll") {
        deleteCaptures(std::move(all));
    } else if (control == "lblDeleteOther") {
        deleteCaptures(std::move(others));
    } else {
        // The labels press the tool bar's buttons, so that both ways run the same code.
        static constexpr std::pair<std::string_view, std::string_view> buttons[] = {
            {"lblThenUpload", "btnUpload"}, {"lblThenSave", "btnPublish"},        {"lblThenCopy", "btnCopy"},
            {"lblThenMail", "btnMail"},     {"lblThenEdit", "btnExternalViewer"},
        };
        for (const auto& [label, button] : buttons)
            if (label == control) toolbar_->button(button)->press();
    }
}

void TMainEditor::showActionsMenu(const wxPoint& screen) {
    if (current_ == nullptr) return;
    wxMenu menu;  // pmActions
    const auto add = [&menu](const char* caption, std::function<void()> action) {
        wxMenuItem* item = menu.Append(wxID_ANY, caption);
        menu.Bind(
            wxEVT_MENU, [action = std::move(action)](wxCommandEvent&) { action(); }, item->GetId());
    };
    const size_t place = placeOf(*current_);
    add("Save as...", [this, place] {
        list_->setCurrent(place, true);
        toolbar_->button("btnPublish")->press();
    });
    add("Rename...", [this, place] { list_->editName(place); });
    menu.AppendSeparator();
    add("Select All", [this] { onLabel("lblSelectAll"); });
    add("Select All Except current", [this] { onLabel("lblSelectOther"); });
    menu.AppendSeparator();
    add("Delete Selected", [this] { onLabel("lblDeleteSelected"); });
    add("Delete All", [this] { onLabel("lblDeleteAll"); });
    add("Delete All Except current", [this] { onLabel("lblDeleteOther"); });
    list_->PopupMenu(&menu, list_->ScreenToClient(screen));
}

void TMainEditor::makeThumbnailsAnew() {
    for (Entry& entry : documents_) entry.thumbnailStale = true;
    thumbnailInWork_.reset();
}

/// Begins the thumbnail of the first capture that needs one; false when there is none.
bool TMainEditor::beginThumbnail() {
    const auto now = std::chrono::steady_clock::now();
    const auto waiting = std::find_if(documents_.begin(), documents_.end(), [now](const Entry& entry) {
        return entry.thumbnailStale && now - entry.changedAt >= thumbnailRest;
    });
    if (waiting == documents_.end()) return false;
    const CaptureDocument& document = *waiting->document;
    thumbnailInWork_ =
        std::make_unique<ThumbInWork>(TThumbCreator(list_->thumbnailSize(), systemColour(wxSYS_COLOUR_WINDOW)),
                                      document, *thumbnailText_, paintOptions(OptionsHolder()), document.modified());
    return true;
}

/// The thumbnail is made, or there is no memory for it: then the old one stays.
void TMainEditor::endThumbnail() {
    const size_t place = placeOf(thumbnailInWork_->document());
    documents_[place].thumbnailStale = false;
    if (thumbnailInWork_->done()) list_->setThumbnail(place, thumbnailInWork_->take());
    thumbnailInWork_.reset();
    if (documents_[place].document.get() != current_) documents_[place].document->park();
}

void TMainEditor::updateThumbnails() {
    if (!IsShown() || commandsRunning_ > 0) return;
    const auto end = std::chrono::steady_clock::now() + thumbnailBudget;
    while (std::chrono::steady_clock::now() < end && (thumbnailInWork_ || beginThumbnail())) {
        const bool failed = !thumbnailInWork_->advance();
        if (failed || thumbnailInWork_->done()) endThumbnail();
    }
    if (thumbnailInWork_) parkOthers();  // its capture is awake until the next round otherwise
}

void TMainEditor::refreshState() {
    stateStale_ = false;
    toolbar_->update([this](CommandNeeds needs) { return available(needs); });
    followTool();
    if (ToolButton* tool = toolbar_->button(toolButton_)) tool->setDown(current_ != nullptr);
    labels_->enableAll(current_ != nullptr);
    const std::string product = productName();
    std::string title = product;
    if (current_ != nullptr)
        title = current_->info().name + (current_->modified() || projectChanged_ ? " * - " : " - ") + product;
    if (GetTitle() != wxText(title)) SetTitle(wxText(title));
    updateStatus();
}

/// The hint of the tool's button, without its key.
wxString TMainEditor::toolInHand() const {
    for (const MainCommand& command : mainCommands())
        if (std::string_view(command.control) == toolButton_) return wxString::FromUTF8(command.hint).BeforeFirst('\r');
    return {};
}

void TMainEditor::updateStatus() {
    if (GetStatusBar() == nullptr) return;
    wxString fields[5];
    if (current_ == nullptr) {
        fields[0] = "No capture";
    } else {
        const auto selected = list_->selected().size();
        fields[0] = selected > 1 ? wxString::Format("%zu of %zu captures selected", selected, documents_.size())
                    : canvas_->tool() != EditTool::Pointer ? toolInHand()
                    : documents_.size() > 1
                        ? wxString::Format("Capture %zu of %zu", placeOf(*current_) + 1, documents_.size())
                        : wxString();
        const auto described = [](const wchar_t* what, const Rect& area) {
            return wxString::Format(L"%s %d \u00d7 %d at %d, %d", what, area.width(), area.height(), area.left,
                                    area.top);
        };
        if (const Rect area = canvas_->selectedArea(); !area.empty()) {
            fields[1] = described(L"Selection", area);
        } else if (const TBBShape* shape = current_->selectedAnnotation()) {
            fields[1] = described(L"Annotation", shape->handleRect().normalized());
        }
        if (const auto at = canvas_->pointerPosition()) fields[2] = wxString::Format("x %d, y %d", at->x, at->y);
        fields[3] = wxString::Format(L"%d \u00d7 %d px", current_->size().width, current_->size().height);
        fields[4] = wxString::Format("%d %%", canvas_->zoom());
    }
    for (int i = 0; i < 5; ++i)
        if (GetStatusBar()->GetStatusText(i) != fields[i]) SetStatusText(fields[i], i);
}

/// The button of the canvas's tool is the pressed one, and the shape button stands for that tool if it is one of its.
void TMainEditor::followTool() {
    if (canvas_ == nullptr) return;
    toolButton_ = buttonOf(canvas_->tool());
    if (std::string_view(toolButton_) == "btnTextShape") markShapeTool(canvas_->tool());
}

void TMainEditor::openDropped(const std::vector<std::string>& paths) {
    if (commandsRunning_ > 0) return;
    openFiles(paths);
    bringForward();
}

}  // namespace glimmer
