#include <cstring>

#include "harness.h"
#include "imaging/blur_taps.h"
#include "imaging/gblur2.h"
#include "imaging/graphutils.h"
#include "imaging/plain_effects.h"
#include "imaging/scaling.h"
#ifdef GLIMMER_HAVE_OPENCV
#include "opencv_peer.h"
#endif

namespace glimmer::bench {

namespace {

constexpr Size screenSize{1920, 1080};

void blurTable(const std::string& what, const TBitmap& picture) {
    std::vector<std::vector<std::string>> rows;
    for (const double radius : {2.5, 10.0}) {
        TBitmap work = picture.clone().take();
        const auto fresh = [&] { copyPixels(work, {0, 0}, picture); };
        std::vector<Entrant> entrants;
#ifdef GLIMMER_HAVE_OPENCV
        const int size = makeGaussianKernel(radius).size;
        entrants.push_back({"OpenCV", [&work, &picture, radius, size] { opencvBlur(picture, work, radius, size); }});
#endif
        if (hasAvx2()) entrants.push_back({"product, AVX2", [&] { blurWith(work, radius, weighAvx2); }, fresh});
        entrants.push_back({"product, SSE2", [&] { blurWith(work, radius, weighSse2); }, fresh});
        entrants.push_back({"literal", [&] { plain::blur(work, radius); }, fresh});
        const std::vector<double> times = compare(entrants, 7);
        for (size_t i = 0; i < entrants.size(); ++i)
            rows.push_back({entrants[i].name, ratio(radius), milliseconds(times[i]), ratio(times[i] / times[0])});
#ifdef GLIMMER_HAVE_OPENCV
        goalAtMost("blur, radius " + ratio(radius) + ", " + what + ": time of OpenCV's", times[1] / times[0], 1);
#endif
    }
    printTable("Blur, 1920 x 1080, 24 bits, " + what, {"", "radius", "ms", "of the first"}, rows);
}

/// Each beside a plain copy of as many bytes as it writes.
void copyTable() {
    const TBitmap wide = pagePicture("shop-1920x1080.png", screenSize, PixelFormat::Bgra32);
    const TBitmap narrow = wide.converted(PixelFormat::Bgr24).take();
    TBitmap wideWork = wide.clone().take();
    TBitmap narrowWork = narrow.clone().take();
    TBitmap wideCopy = wide.clone().take();
    const TBitmap tile = wide.cropped({0, 0, 640, 360}).take();
    const auto memory = [&](size_t count) {
        return Entrant{"memcpy", [&, count] { std::memcpy(wideCopy.bytes().data(), wide.bytes().data(), count); }};
    };
    const struct {
        const char* name;
        size_t bytes;  ///< written
        std::function<void()> work;
    } cases[] = {
        {"grayscale", wide.byteCount(), [&] { grayscale(wideWork); }},
        {"invert", wide.byteCount(), [&] { invert(wideWork); }},
        {"interlace, 32 bits", wide.byteCount(), [&] { interlace(wideWork); }},
        {"interlace, 24 bits", narrow.byteCount(), [&] { interlace(narrowWork); }},
        {"24 to 32 bits", wide.byteCount(), [&] { convertPixels(wideWork, narrow); }},
        {"32 to 24 bits", narrow.byteCount(), [&] { convertPixels(narrowWork, wide); }},
        {"nine tiles of 640 x 360", wide.byteCount(),
         [&] {
             for (int32_t i = 0; i < 9; ++i) copyPixels(wideWork, {i % 3 * 640, i / 3 * 360}, tile);
         }},
    };
    std::vector<std::vector<std::string>> rows;
    for (const auto& c : cases) {
        const std::vector<double> times = compare({memory(c.bytes), {c.name, c.work}}, 31);
        rows.push_back({c.name, milliseconds(times[1]), milliseconds(times[0]), ratio(times[0] / times[1])});
        goalAtLeast(std::string(c.name) + ": speed of memcpy", times[0] / times[1], 0.5);
    }
    printTable("Pixel operations, 1920 x 1080", {"", "ms", "memcpy of the same bytes, ms", "speed of memcpy"}, rows);
}

void scalingTable() {
    const TBitmap tall = pagePicture("table-1280x10000.png", {1280, 10000}, PixelFormat::Bgra32);
    const TBitmap page = pagePicture("shop-1920x1080.png", screenSize, PixelFormat::Bgra32);
    const struct {
        const char* name;
        std::function<void()> work;
    } cases[] = {
        {"thumbnail of 1280 x 10000 within 150 x 150",
         [&] {
             thumbnail(tall, {150, 150}).take();
         }},
        {"thumbnail of 1920 x 1080 within 150 x 150",
         [&] {
             thumbnail(page, {150, 150}).take();
         }},
        {"1920 x 1080 to 1600 x 900", [&] { resized(page, 1600, 900).take(); }},
        {"1920 x 1080 to 2560 x 1440", [&] { resized(page, 2560, 1440).take(); }},
    };
    std::vector<std::vector<std::string>> rows;
    for (const auto& c : cases) rows.push_back({c.name, milliseconds(compare({{c.name, c.work}})[0])});
    printTable("Resizing, 32 bits", {"", "ms"}, rows);
}

}  // namespace

void effects() {
    blurTable("page", pagePicture("shop-1920x1080.png", screenSize, PixelFormat::Bgr24));
    blurTable("noise", noisePicture(screenSize, PixelFormat::Bgr24));
    copyTable();
    scalingTable();
}

}  // namespace glimmer::bench
