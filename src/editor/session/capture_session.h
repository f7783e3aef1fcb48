#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "editor/document/document.h"
#include "editor/recovery/recovery_keeper.h"

namespace glimmer {

/// Where a session shows its current capture.
class CaptureStage {
public:
    virtual ~CaptureStage() = default;
    /// Whether another capture may come on it: the user is in the middle of nothing on the one before. An empty stage
    /// is not asked.
    [[nodiscard]] virtual bool free() const = 0;
    /// Shows this one, whose picture is awake, instead of the one before.
    virtual void show(CaptureDocument& capture) = 0;
    /// Shows none.
    virtual void clear() = 0;
};

/// Hears what becomes of a session's captures. Places are counted from 0.
class SessionListener {
public:
    virtual ~SessionListener() = default;
    virtual void captureAdded(size_t /*place*/) {}
    /// The capture has left its place, those behind it have moved up; it is destroyed after the call.
    virtual void captureRemoved(size_t /*place*/, const CaptureDocument& /*capture*/) {}
    virtual void captureMoved(size_t /*from*/, size_t /*to*/) {}
    virtual void captureChanged(const CaptureDocument& /*capture*/, const DocumentChange& /*change*/) {}
    /// Another one is current, or none.
    virtual void currentChanged() {}
    /// What was chosen is not shown: the current capture is the chosen one again.
    virtual void currentStays() {}
    /// This one cannot be shown for want of memory, and the user is to be told.
    virtual void noRoomFor(const CaptureDocument& /*capture*/) {}
    /// The project, or whether it has changed, is another.
    virtual void projectChanged() {}
};

/// The captures that are open together, in the user's order; the current one, which is on a stage while all others give
/// up their address space; the project that they came from; and what is kept of them against a crash. It owns them.
/// User-interface thread only.
class CaptureSession {
public:
    using Captures = std::vector<CaptureDocument*>;
    static constexpr size_t longestName = 200;  ///< of a capture, in UTF-16 units

    /// `recovery`: where open captures are kept. The stage outlives every call but the destructor's; a listener stays
    /// until the session goes.
    explicit CaptureSession(std::filesystem::path recovery) : recovery_(std::move(recovery)) {}
    /// Without a question: what the user has worked on is offered again at the next start.
    ~CaptureSession();
    CaptureSession(const CaptureSession&) = delete;
    CaptureSession& operator=(const CaptureSession&) = delete;
    CaptureSession(CaptureSession&&) = delete;
    CaptureSession& operator=(CaptureSession&&) = delete;

    void setStage(CaptureStage& stage) { stage_ = &stage; }
    void listen(SessionListener& listener) { listeners_.push_back(&listener); }

    // --- what is open
    // -------------------------------------------------------------------------------------------------

    [[nodiscard]] bool empty() const { return entries_.empty(); }
    [[nodiscard]] size_t size() const { return entries_.size(); }
    [[nodiscard]] CaptureDocument& at(size_t place) const { return *entries_.at(place).capture; }
    [[nodiscard]] Captures all() const;
    [[nodiscard]] Captures unsaved() const;
    /// size() when it is none of them.
    [[nodiscard]] size_t placeOf(const CaptureDocument& capture) const;
    [[nodiscard]] CaptureDocument* current() const { return current_; }  ///< on the stage, or none

    /// Takes a capture to the end of the list and shows it. `former`: what it was opened from, if an earlier run left
    /// it behind.
    CaptureDocument& add(std::unique_ptr<CaptureDocument> capture, std::optional<RecoveryStore::Entry> former = {});
    /// Closes those of these captures that are still open. When the current one is among them, the one behind it is
    /// shown, or the one before, or none.
    void remove(const Captures& captures);
    /// Closes all. What of them was kept against a crash goes too, unless `kept`: then those that the user has worked
    /// on are offered again at the next start.
    void discardAll(bool kept = false);
    /// To another place, and shows it. Does nothing for places that there are not.
    void move(size_t from, size_t to);
    /// Each capture has a name, cut to its longest; a blank one changes nothing. Names need not differ.
    Status rename(CaptureDocument& capture, const std::string& name);

    // --- the stage
    // ----------------------------------------------------------------------------------------------------

    /// Shows a capture; where that has to wait for something to end, showDue() does. Without room for its picture the
    /// current one stays.
    void show(CaptureDocument& capture);
    /// At a quiet moment: shows what had to wait for one.
    void showDue();
    /// Whether a capture waits for that.
    [[nodiscard]] bool due() const { return due_ != nullptr; }
    /// All but the current one, and `also`, give up their addresses.
    void parkOthers(const CaptureDocument* also = nullptr) const;

    /// While one lives captures come together: the stage is changed for the last of them alone, in the end.
    class Together {
    public:
        explicit Together(CaptureSession& session) : session_(session) { ++session_.together_; }
        ~Together() { --session_.together_; }
        Together(const Together&) = delete;
        Together& operator=(const Together&) = delete;
        Together(Together&&) = delete;
        Together& operator=(Together&&) = delete;

    private:
        CaptureSession& session_;
    };

    // --- the project
    // --------------------------------------------------------------------------------------------------

    /// UTF-8 path of the project that saving goes on with; empty when there is none.
    [[nodiscard]] const std::string& projectPath() const { return projectPath_; }
    /// Captures came, went or moved since it was opened or saved.
    [[nodiscard]] bool projectHasChanged() const { return projectChanged_; }
    /// The captures are those of this project now.
    void setProject(const std::string& path);

    /// What a question about leaving was about.
    class State {
    public:
        explicit State(const CaptureSession& session) : all_(session.all()), unsaved_(session.unsaved()) {}
        /// Whether no capture is new or unsaved in `later` that was not so here.
        [[nodiscard]] bool covers(const State& later) const;

    private:
        Captures all_;
        Captures unsaved_;
    };

    [[nodiscard]] RecoveryKeeper& recovery() { return recovery_; }

private:
    struct Entry {
        std::unique_ptr<CaptureDocument> capture;
        int observer = 0;
    };
    [[nodiscard]] bool stageIsFree() const { return current_ == nullptr || (together_ == 0 && stage_->free()); }
    bool putOnStage(CaptureDocument& capture);
    void showInsteadOf(const std::vector<size_t>& places);
    void clearStage();
    void removePlaces(const std::vector<size_t>& places, bool kept);
    void projectTouched();
    template <class... Parameters, class... Arguments>
    void tell(void (SessionListener::*what)(Parameters...), const Arguments&... arguments) const {
        for (SessionListener* listener : listeners_) (listener->*what)(arguments...);
    }

    std::vector<Entry> entries_;
    CaptureDocument* current_ = nullptr;
    CaptureDocument* due_ = nullptr;
    int together_ = 0;
    std::string projectPath_;
    bool projectChanged_ = false;
    CaptureStage* stage_ = nullptr;
    std::vector<SessionListener*> listeners_;
    RecoveryKeeper recovery_;
};

}  // namespace glimmer
