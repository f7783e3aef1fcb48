#pragma once

#include <chrono>
#include <map>
#include <memory>

#include "editor/session/capture_session.h"

namespace glimmer {

class CaptureList;
class TextPainter;
class ThumbInWork;

/// Keeps the thumbnails of a session's captures in the list up to date, a little at a time.
class ThumbnailMaker : public SessionListener {
public:
    ThumbnailMaker(CaptureSession& session, CaptureList& list);
    ~ThumbnailMaker() override;
    ThumbnailMaker(const ThumbnailMaker&) = delete;
    ThumbnailMaker& operator=(const ThumbnailMaker&) = delete;
    ThumbnailMaker(ThumbnailMaker&&) = delete;
    ThumbnailMaker& operator=(ThumbnailMaker&&) = delete;

    /// A round of the work, which nobody notices. For a timer.
    void work();
    /// All of them look different now.
    void makeAnew();

private:
    using Clock = std::chrono::steady_clock;
    void captureAdded(size_t place) override;
    void captureRemoved(size_t place, const CaptureDocument& capture) override;
    void captureChanged(const CaptureDocument& capture, const DocumentChange& change) override;
    void giveUp(const CaptureDocument& capture);
    bool begin();
    void end();

    CaptureSession& session_;
    CaptureList& list_;
    std::unique_ptr<TextPainter> text_;
    std::map<const CaptureDocument*, Clock::time_point> stale_;  ///< to be made, and when they changed
    std::unique_ptr<ThumbInWork> inWork_;
};

}  // namespace glimmer
