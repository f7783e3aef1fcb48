#include "main_window/thumbnail_maker.h"

#include <wx/settings.h>

#include <algorithm>

#include "editor/labels/rich_text_painter.h"
#include "editor/painting/display_options.h"
#include "main_window/capture_list.h"
#include "main_window/thumb_creator.h"
#include "settings/options.h"

namespace glimmer {

namespace {

/// A round ends after this time, so that nobody notices it.
constexpr std::chrono::milliseconds budget{12};
/// A capture that changes is left in peace, and its drag has the processor for itself.
constexpr std::chrono::milliseconds rest{400};

Colour systemColour(wxSystemColour which) {
    const wxColour colour = wxSystemSettings::GetColour(which);
    return rgb(colour.Red(), colour.Green(), colour.Blue());
}

}  // namespace

ThumbnailMaker::ThumbnailMaker(CaptureSession& session, CaptureList& list)
    : session_(session), list_(list), text_(std::make_unique<RichTextPainter>()) {
    session.listen(*this);
}

ThumbnailMaker::~ThumbnailMaker() = default;

void ThumbnailMaker::captureAdded(size_t place) { stale_[&session_.at(place)] = {}; }

void ThumbnailMaker::captureRemoved(size_t /*place*/, const CaptureDocument& capture) {
    giveUp(capture);
    stale_.erase(&capture);
}

void ThumbnailMaker::captureChanged(const CaptureDocument& capture, const DocumentChange& change) {
    if (!change.pixels && !change.annotations && !change.size && !change.state && !change.info) return;
    giveUp(capture);
    stale_[&capture] = Clock::now();
}

void ThumbnailMaker::giveUp(const CaptureDocument& capture) {
    if (inWork_ && &inWork_->document() == &capture) inWork_.reset();
}

void ThumbnailMaker::makeAnew() {
    inWork_.reset();
    for (const CaptureDocument* capture : session_.all()) stale_.try_emplace(capture);
}

/// The first capture that needs one; false when there is none.
bool ThumbnailMaker::begin() {
    const Clock::time_point now = Clock::now();
    const CaptureSession::Captures all = session_.all();
    const auto waiting = std::find_if(all.begin(), all.end(), [this, now](const CaptureDocument* capture) {
        const auto stale = stale_.find(capture);
        return stale != stale_.end() && now - stale->second >= rest;
    });
    if (waiting == all.end()) return false;
    const TThumbCreator creator(list_.thumbnailSize(), systemColour(wxSYS_COLOUR_WINDOW));
    inWork_ = std::make_unique<ThumbInWork>(creator, **waiting, *text_, paintOptions(OptionsHolder()),
                                            (*waiting)->modified());
    return true;
}

/// The thumbnail is made, or there is no memory for it: then the old one stays.
void ThumbnailMaker::end() {
    const size_t place = session_.placeOf(inWork_->document());
    stale_.erase(&inWork_->document());
    if (inWork_->done()) list_.setThumbnail(place, inWork_->take());
    inWork_.reset();
    CaptureDocument& capture = session_.at(place);
    if (&capture != session_.current()) capture.park();
}

void ThumbnailMaker::work() {
    const Clock::time_point until = Clock::now() + budget;
    while (Clock::now() < until && (inWork_ || begin())) {
        const bool failed = !inWork_->advance();
        if (failed || inWork_->done()) end();
    }
    if (inWork_) session_.parkOthers();  // its capture is awake until the next round otherwise
}

}  // namespace glimmer
