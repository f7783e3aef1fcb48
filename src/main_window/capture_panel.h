#pragma once

#include <wx/panel.h>

#include <functional>

#include "main_window/command_context.h"

namespace glimmer {

class CaptureList;
class SelectionPanel;

/// The left part of the main window: the list of a session's captures, which follows the session, and the labels below
/// it.
class CapturePanel : public wxPanel, private SessionListener {
public:
    struct Events {
        std::function<void()> selectionChanged;
        /// The user wants these captures brought somewhere.
        std::function<void(OutputCommand, const Captures&)> output;
    };
    CapturePanel(wxWindow* parent, CaptureSession& session, Events events);

    /// What the window's first picture does not need: shows the list and makes the labels.
    void complete();
    [[nodiscard]] CaptureList& list() const { return *list_; }
    [[nodiscard]] SelectionPanel& labels() const { return *labels_; }
    /// In list order; the current one when none is.
    [[nodiscard]] Captures selected() const;

private:
    void captureAdded(size_t place) override;
    void captureRemoved(size_t place, const CaptureDocument& capture) override;
    void captureMoved(size_t from, size_t to) override;
    void captureChanged(const CaptureDocument& capture, const DocumentChange& change) override;
    void currentStays() override;
    void makeList();
    void rename(size_t place, const wxString& name);

    CaptureSession& session_;
    Events events_;
    CaptureList* list_ = nullptr;
    SelectionPanel* labels_ = nullptr;
};

}  // namespace glimmer
