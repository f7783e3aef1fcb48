#include "output/print/print_source.h"

#include <algorithm>
#include <cmath>

#include "imaging/scaling.h"
#include "output/picture/output_picture.h"

namespace glimmer {

namespace {

class StoppedClock : public Clock {
public:
    explicit StoppedClock(LocalTime time) : time_(time) {}
    LocalTime now() override { return time_; }

private:
    LocalTime time_;
};

}  // namespace

PrintSource::PrintSource(CaptureDocument& document, TextPainter& text)
    : document_(document), text_(text), time_(systemClock().now()) {}

int32_t PrintSource::bandRows() const { return std::max(bandBytes / (size().width * 4), 1); }

Result<TBitmap> PrintSource::rows(int32_t from, int32_t to) const {
    StoppedClock clock(time_);
    return outputRows(document_, from, to, clock, text_);
}

Status PrintSource::look(int64_t mostPixels, const Progress& progress) {
    const BackToRest rest(document_);
    const Size whole = size();
    const double part = std::sqrt(static_cast<double>(mostPixels) / (static_cast<double>(whole.width) * whole.height));
    const Size small = fittedSize(
        whole, {static_cast<int32_t>(whole.width * part) + 1, static_cast<int32_t>(whole.height * part) + 1});
    Result<TBitmap> all = TBitmap::create(small.width, small.height, PixelFormat::Bgra32);
    if (!all) return all.failure();
    stripes_ = {};
    // In steps of the reduced copy's rows, whose edges are rounded to whole rows of the picture.
    const auto edge = [&](int32_t row) {
        return static_cast<int32_t>(static_cast<int64_t>(row) * whole.height / small.height);
    };
    const auto step =
        static_cast<int32_t>(std::max<int64_t>(static_cast<int64_t>(bandRows()) * small.height / whole.height, 1));
    for (int32_t y = 0; y < small.height; y += step) {
        if (progress && !progress(static_cast<double>(y) / small.height)) return Failure{};
        const int32_t end = std::min(y + step, small.height);
        const Result<TBitmap> band = rows(edge(y), edge(end));
        if (!band) return band.failure();
        stripes_.add(*band);
        const Result<TBitmap> fewer = resized(*band, small.width, end - y);
        if (!fewer) return fewer.failure();
        copyPixels(*all, {0, y}, *fewer);
    }
    reduced_ = all.take();
    return {};
}

}  // namespace glimmer
