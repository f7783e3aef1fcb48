#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "imaging/gif_codec.h"

namespace glimmer {

namespace {

/// A code of the compression stands for at most 4096 pixels and takes 9 bits or more.
constexpr uint64_t maxPixelsPerByte = 4096;

/// A file's area may have so many pixels more than its bytes can fill: room for a small frame on a large screen.
constexpr uint64_t emptyPixels = uint64_t{16} * 1024 * 1024;

/// One run of giflib's reader.
class Decoder {
public:
    explicit Decoder(std::span<const uint8_t> file) : file_(file), left_(file) {
        gif_ = DGifOpen(this, &Decoder::read, &error_);
    }
    ~Decoder() {
        if (gif_ != nullptr) DGifCloseFile(gif_, nullptr);
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    Decoder(Decoder&&) = delete;
    Decoder& operator=(Decoder&&) = delete;

    Result<TBitmap> run() {
        if (gif_ == nullptr) return failure();
        for (;;) {
            GifRecordType kind = UNDEFINED_RECORD_TYPE;
            if (DGifGetRecordType(gif_, &kind) == GIF_ERROR) return failure();
            switch (kind) {
                case EXTENSION_RECORD_TYPE:
                    if (!readExtension()) return failure();
                    break;
                case IMAGE_DESC_RECORD_TYPE:
                    if (DGifGetImageDesc(gif_) == GIF_ERROR) return failure();
                    return readFrame();
                case TERMINATE_RECORD_TYPE:
                    return Failure{"The GIF file has no picture."};
                default:
                    return failure();
            }
        }
    }

private:
    static int read(GifFileType* gif, GifByteType* to, int count) {
        auto* self = static_cast<Decoder*>(gif->UserData);
        const size_t now = std::min(static_cast<size_t>(count), self->left_.size());
        if (now > 0) std::memcpy(to, self->left_.data(), now);
        self->left_ = self->left_.subspan(now);
        return static_cast<int>(now);
    }

    bool readExtension() {
        int code = 0;
        GifByteType* block = nullptr;
        if (DGifGetExtension(gif_, &code, &block) == GIF_ERROR) return false;
        while (block != nullptr) {
            // Length, flags, delay (two bytes), number of the transparent colour.
            if (code == GRAPHICS_EXT_FUNC_CODE && block[0] >= 4)
                transparent_ = (block[1] & 1U) != 0 ? std::optional<uint8_t>(block[4]) : std::nullopt;
            if (DGifGetExtensionNext(gif_, &block) == GIF_ERROR) return false;
        }
        return true;
    }

    Result<TBitmap> readFrame() {
        const GifImageDesc& frame = gif_->Image;
        const ColorMapObject* map = frame.ColorMap != nullptr ? frame.ColorMap : gif_->SColorMap;
        if (map == nullptr) return Failure{"The GIF picture has no colours."};
        const bool screen = gif_->SWidth > 0 && gif_->SHeight > 0;
        const int32_t width = screen ? gif_->SWidth : frame.Left + frame.Width;
        const int32_t height = screen ? gif_->SHeight : frame.Top + frame.Height;
        if (frame.Width < 1 || frame.Height < 1) return failure();
        if (Status fits = TBitmap::check(frame.Width, frame.Height, PixelFormat::Bgra32); !fits) return fits.failure();
        if (static_cast<uint64_t>(frame.Width) * static_cast<uint64_t>(frame.Height) > file_.size() * maxPixelsPerByte)
            return Failure{"The GIF picture is cut short."};
        const uint64_t area = static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
        if (area > file_.size() * maxPixelsPerByte + emptyPixels)
            return Failure{"The GIF picture is larger than its content."};
        Result<TBitmap> bitmap = TBitmap::create(width, height, PixelFormat::Bgra32);
        if (!bitmap) return bitmap;

        // Four bytes for each colour number, as they are put into the picture.
        std::array<uint8_t, size_t{256} * 4> colours{};
        for (size_t i = 0; i < 256; ++i) {
            if (i < static_cast<size_t>(map->ColorCount)) {
                colours[i * 4] = map->Colors[i].Blue;
                colours[i * 4 + 1] = map->Colors[i].Green;
                colours[i * 4 + 2] = map->Colors[i].Red;
            }
            colours[i * 4 + 3] = 255;
        }
        if (transparent_) std::fill_n(colours.begin() + std::ptrdiff_t{4} * *transparent_, 4, uint8_t{0});

        std::vector<uint8_t> indices(static_cast<size_t>(frame.Width));
        struct Pass {
            int32_t first, step;
        };
        static constexpr Pass interlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
        static constexpr Pass straight[] = {{0, 1}};
        const std::span<const Pass> passes = frame.Interlace ? std::span<const Pass>(interlaced) : straight;
        for (const Pass& pass : passes) {
            for (int32_t y = pass.first; y < frame.Height; y += pass.step) {
                if (DGifGetLine(gif_, indices.data(), frame.Width) == GIF_ERROR) return failure();
                putRow(*bitmap, frame, y, indices, colours);
            }
        }
        return bitmap;
    }

    /// A frame that reaches beyond the file's area is cut to it.
    static void putRow(TBitmap& bitmap, const GifImageDesc& frame, int32_t y, std::span<const uint8_t> indices,
                       const std::array<uint8_t, size_t{256} * 4>& colours) {
        if (frame.Top + y >= bitmap.height()) return;
        uint8_t* row = bitmap.row(frame.Top + y);
        const int32_t right = std::min(frame.Left + frame.Width, bitmap.width());
        for (int32_t x = frame.Left; x < right; ++x)
            std::memcpy(row + static_cast<size_t>(x) * 4,
                        colours.data() + size_t{4} * indices[static_cast<size_t>(x - frame.Left)], 4);
    }

    [[nodiscard]] Failure failure() const {
        const char* text = GifErrorString(gif_ != nullptr ? gif_->Error : error_);
        return Failure{std::string("The GIF picture is damaged") +
                       (text != nullptr ? " (" + std::string(text) + ")" : std::string()) + "."};
    }

    std::span<const uint8_t> file_;
    std::span<const uint8_t> left_;
    GifFileType* gif_ = nullptr;
    int error_ = 0;
    std::optional<uint8_t> transparent_;
};

}  // namespace

Result<TBitmap> readGif(std::span<const uint8_t> file) {
    if (file.size() < 6 || (std::memcmp(file.data(), "GIF87a", 6) != 0 && std::memcmp(file.data(), "GIF89a", 6) != 0))
        return Failure{"The data is not a GIF picture."};
    return Decoder(file).run();
}

}  // namespace glimmer
