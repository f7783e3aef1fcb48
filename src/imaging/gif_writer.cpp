#include <gif_lib.h>

#include <bit>
#include <memory>
#include <new>

#include "common/assertion.h"
#include "imaging/gif_codec.h"
#include "imaging/quantiser.h"

namespace glimmer {

namespace {

constexpr int32_t maxSide = 65535;

struct MapDeleter {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using ColorMap = std::unique_ptr<ColorMapObject, MapDeleter>;

/// One run of giflib's writer into memory.
class Encoder {
public:
    Encoder() { gif_ = EGifOpen(this, &Encoder::put, &error_); }
    ~Encoder() { close(); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    Encoder(Encoder&&) = delete;
    Encoder& operator=(Encoder&&) = delete;

    Result<std::vector<uint8_t>> run(const TBitmap& bitmap, const Progress& progress) {
        Quantiser quantiser(bitmap);
        const std::span<const Pixel> colours = quantiser.colours();
        // A colour table's length is a power of two.
        const size_t entries = std::bit_ceil(std::max<size_t>(colours.size(), 2));
        const ColorMap map(GifMakeMapObject(static_cast<int>(entries), nullptr));
        if (gif_ == nullptr || map == nullptr) return failure();
        for (size_t i = 0; i < colours.size(); ++i)
            map->Colors[i] = {static_cast<GifByteType>(redIn(colours[i])),
                              static_cast<GifByteType>(greenIn(colours[i])),
                              static_cast<GifByteType>(blueIn(colours[i]))};
        if (EGifPutScreenDesc(gif_, bitmap.width(), bitmap.height(), map->BitsPerPixel, 0, map.get()) == GIF_ERROR ||
            EGifPutImageDesc(gif_, 0, 0, bitmap.width(), bitmap.height(), false, nullptr) == GIF_ERROR)
            return failure();
        std::vector<uint8_t> indices(static_cast<size_t>(bitmap.width()));
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            if (!proceed(progress, y, bitmap.height())) return cancelled();
            quantiser.nextRow(indices);
            if (EGifPutLine(gif_, indices.data(), bitmap.width()) == GIF_ERROR) return failure();
        }
        if (!close()) return failure();
        return std::move(file_);
    }

private:
    static int put(GifFileType* gif, const GifByteType* data, int count) {
        return static_cast<Encoder*>(gif->UserData)->take({data, static_cast<size_t>(count)});
    }
    /// Nothing may be thrown through giflib.
    int take(std::span<const uint8_t> data) noexcept {
        try {
            file_.insert(file_.end(), data.begin(), data.end());
            return static_cast<int>(data.size());
        } catch (const std::bad_alloc&) {
            return 0;
        }
    }
    bool close() {
        if (gif_ == nullptr) return true;
        const bool done = EGifCloseFile(gif_, &error_) != GIF_ERROR;
        gif_ = nullptr;
        return done;
    }
    static Failure failure() { return Failure{"There is not enough memory to write the GIF picture."}; }

    std::vector<uint8_t> file_;
    GifFileType* gif_ = nullptr;
    int error_ = 0;
};

}  // namespace

Result<std::vector<uint8_t>> encodeGif(const TBitmap& bitmap, const Progress& progress) {
    GLIMMER_ASSERT(bitmap.format() == PixelFormat::Bgr24, "24 bits", "gif_writer");
    if (bitmap.width() > maxSide || bitmap.height() > maxSide)
        return Failure{"A GIF picture cannot have more than 65535 pixels on a side."};
    return Encoder().run(bitmap, progress);
}

}  // namespace glimmer
