#pragma once

#include <functional>
#include <vector>

#include "editor/session/capture_session.h"

class wxFrame;

namespace glimmer {

/// The offer, once, of the captures that an earlier run left behind, whatever ended it.
class RecoveredOffer {
public:
    /// `opened`: at least one capture is open after the user took it.
    RecoveredOffer(CaptureSession& session, wxFrame& window, std::function<void()> opened)
        : session_(session), window_(window), opened_(std::move(opened)) {}

    /// In a message box or, where another capture has brought the window up, in a bar of the window.
    void make(bool inBar);

private:
    using Entries = std::vector<RecoveryStore::Entry>;
    void ask(const Entries& entries);
    void showBar(const Entries& entries);
    void open(const Entries& entries);
    void toss(const Entries& entries);

    CaptureSession& session_;
    wxFrame& window_;
    std::function<void()> opened_;
    bool made_ = false;
};

}  // namespace glimmer
