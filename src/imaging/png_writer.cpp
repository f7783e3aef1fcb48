#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "common/assertion.h"
#include "imaging/jump_guard.h"
#include "imaging/png_codec.h"
#include "imaging/png_rows.h"
#include "imaging/png_text.h"

namespace glimmer {

namespace {

/// Level of deflate for texts.
constexpr int compressionLevel = 6;

/// Image data goes out in chunks of this size.
constexpr size_t imageChunkSize = size_t{64} * 1024;

Failure noMemory() { return Failure{"There is not enough memory to write the picture."}; }

Failure tooLarge(const char* what, size_t found, const char* unit, size_t most) {
    return Failure{std::string(what) + " (" + std::to_string(found) + unit + ", at most " + std::to_string(most) +
                   ")."};
}

/// A reader takes the private chunks all or not at all.
Status checkBounds(const PngExtras& extras, const PngBounds& bounds) {
    size_t bytes = 0;
    for (const PngChunk& chunk : extras.chunks) bytes += chunk.data.size();
    if (extras.chunks.size() > bounds.privateChunks)
        return tooLarge("The picture has too many annotations to be saved for editing", extras.chunks.size(), " parts",
                        bounds.privateChunks);
    if (bytes > bounds.privateBytes)
        return tooLarge("What the picture needs to be edited again is too large to be saved", bytes, " bytes",
                        bounds.privateBytes);
    return {};
}

/// Data of a "zTXt" chunk. libpng would write an empty text as "tEXt".
Result<std::vector<uint8_t>> compressedText(const PngText& text) {
    const std::string bytes = toPngText(text.text);
    const Failure tooLong =
        tooLarge("The notes are too long to be saved", bytes.size(), " bytes", PngLimits::textBytes);
    if (bytes.size() > PngLimits::textBytes) return tooLong;
    std::vector<uint8_t> data(text.keyword.begin(), text.keyword.end());
    data.insert(data.end(), {0, 0});  // end of the keyword, kind of compression
    const size_t start = data.size();
    uLongf length = compressBound(static_cast<uLong>(bytes.size()));
    data.resize(start + length);
    if (compress2(data.data() + start, &length, reinterpret_cast<const Bytef*>(bytes.data()),
                  static_cast<uLong>(bytes.size()), compressionLevel) != Z_OK)
        return noMemory();
    data.resize(start + length);
    if (data.size() > PngLimits::textBytes) return tooLong;
    return data;
}

/// Keywords and chunk types come from our own code; one that the format forbids is a programming error.
void checkExtras(const PngExtras& extras) {
    for (const PngText& text : extras.texts)
        GLIMMER_ASSERT(
            !text.keyword.empty() && text.keyword.size() <= 79 && text.keyword.find('\0') == std::string::npos,
            "keyword of 1 to 79 characters", "png_writer");
    for (const PngChunk& chunk : extras.chunks) {
        GLIMMER_ASSERT(chunk.type == "bBIn" || chunk.type == "bBPn", "known private chunk", "png_writer");
        GLIMMER_ASSERT(chunk.data.size() <= PNG_UINT_31_MAX, "chunk data fits", "png_writer");
    }
}

/// One run of libpng's writer, which puts chunks into the file; the rows are made and compressed by PngRows, quicker
/// than the library does it. What needs a destructor lives in the object, see runGuarded().
class Encoder {
public:
    Encoder(const TBitmap& bitmap, const PngExtras& extras, const ByteSink& sink, const Progress& progress,
            size_t longest)
        : bitmap_(bitmap), extras_(extras), sink_(sink), progress_(progress), left_(longest), rows_(bitmap) {
        png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, &Encoder::fail, &Encoder::ignoreWarning);
        if (png_ != nullptr) info_ = png_create_info_struct(png_);
    }
    ~Encoder() { png_destroy_write_struct(&png_, &info_); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    Encoder(Encoder&&) = delete;
    Encoder& operator=(Encoder&&) = delete;

    Status run() {
        if (info_ == nullptr) return noMemory();
        for (const PngText& text : extras_.texts) {
            const Result<std::vector<uint8_t>> data = compressedText(text);
            if (!data) return data.failure();
            texts_.push_back(*data);
        }
        preparePalette();
        if (Status done = guarded(&Encoder::writeHead); !done) return done;
        const ByteSink image = [this](std::span<const uint8_t> piece) {
            piece_ = piece;
            return guarded(&Encoder::writePiece);
        };
        if (Status done = compressRows(rows_, imageChunkSize, image, progress_); !done) return done;
        return guarded(&Encoder::writeTail);
    }

private:
    void preparePalette() {
        if (!rows_.palette()) return;
        for (const Pixel colour : rows_.palette()->colours()) {
            colours_.push_back({static_cast<png_byte>(redIn(colour)), static_cast<png_byte>(greenIn(colour)),
                                static_cast<png_byte>(blueIn(colour))});
            // The colours with transparency come first, so their list may end before the palette does.
            if (alphaIn(colour) != 255) alphas_.push_back(static_cast<png_byte>(alphaIn(colour)));
        }
    }
    [[nodiscard]] int colourType() const {
        if (rows_.palette()) return PNG_COLOR_TYPE_PALETTE;
        return rows_.alpha() ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
    }

    /// One step with the library; its failure is that of the sink, where the sink was the reason.
    Status guarded(void (Encoder::*step)()) {
        step_ = step;
        const auto body = [](void* object) {
            auto* self = static_cast<Encoder*>(object);
            (self->*self->step_)();
        };
        if (runGuarded(png_jmpbuf(png_), body, this)) return {};
        return status_.ok() ? Status(Failure{std::string("The PNG picture cannot be written (") + message_ + ")."})
                            : status_;
    }

    [[noreturn]] static void fail(png_structp png, png_const_charp message) {
        auto* self = static_cast<Encoder*>(png_get_error_ptr(png));
        std::snprintf(self->message_, sizeof self->message_, "%s", message);
        png_longjmp(png, 1);
    }
    static void ignoreWarning(png_structp, png_const_charp) {}
    static void flush(png_structp) {}
    static void put(png_structp png, png_bytep data, size_t count) {
        if (!static_cast<Encoder*>(png_get_io_ptr(png))->take({data, count})) png_error(png, "output failed");
    }
    /// Nothing may be thrown through libpng.
    bool take(std::span<const uint8_t> data) {
        try {
            status_ = data.size() > left_ ? Status(Failure{"The picture's file would be too large to be opened again."})
                                          : sink_(data);
            left_ -= std::min(left_, data.size());
        } catch (const std::exception& error) {
            status_ = Failure{error.what()};
        }
        return status_.ok();
    }

    void writeHead() {
        png_set_write_fn(png_, this, &Encoder::put, &Encoder::flush);
        png_set_user_limits(png_, TBitmap::maxSide, TBitmap::maxSide);
        png_set_IHDR(png_, info_, static_cast<png_uint_32>(bitmap_.width()), static_cast<png_uint_32>(bitmap_.height()),
                     rows_.depth(), colourType(), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                     PNG_FILTER_TYPE_DEFAULT);
        if (!colours_.empty()) png_set_PLTE(png_, info_, colours_.data(), static_cast<int>(colours_.size()));
        if (!alphas_.empty()) png_set_tRNS(png_, info_, alphas_.data(), static_cast<int>(alphas_.size()), nullptr);
        png_write_info(png_, info_);
        for (const std::vector<uint8_t>& text : texts_) writeChunk("zTXt", text);
    }
    void writePiece() { writeChunk("IDAT", piece_); }
    /// The end is a chunk like the others: png_write_end() wants to have compressed the rows itself.
    void writeTail() {
        for (const PngChunk& chunk : extras_.chunks) writeChunk(chunk.type.c_str(), chunk.data);
        writeChunk("IEND", {});
    }

    void writeChunk(const char* type, std::span<const uint8_t> data) {
        png_write_chunk(png_, reinterpret_cast<png_const_bytep>(type), data.data(), data.size());
    }

    const TBitmap& bitmap_;
    const PngExtras& extras_;
    const ByteSink& sink_;
    const Progress& progress_;
    size_t left_;  ///< bytes that the file may still get
    PngRows rows_;
    std::vector<png_color> colours_;
    std::vector<png_byte> alphas_;
    std::vector<std::vector<uint8_t>> texts_;
    std::span<const uint8_t> piece_;  ///< the next of the image data
    void (Encoder::*step_)() = nullptr;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    Status status_;
    char message_[120] = "";
};

}  // namespace

Status writePng(const TBitmap& bitmap, const PngExtras& extras, const ByteSink& sink, const Progress& progress,
                const PngBounds& bounds) {
    if (bitmap.empty()) return Failure{"There is no picture to write."};
    checkExtras(extras);
    if (Status allowed = checkBounds(extras, bounds); !allowed) return allowed;
    return Encoder(bitmap, extras, sink, progress, bounds.fileBytes).run();
}

Result<std::vector<uint8_t>> encodePng(const TBitmap& bitmap, const PngExtras& extras, const Progress& progress) {
    std::vector<uint8_t> file;
    const Status done = writePng(
        bitmap, extras,
        [&file](std::span<const uint8_t> data) {
            file.insert(file.end(), data.begin(), data.end());
            return Status();
        },
        progress);
    if (!done) return done.failure();
    return file;
}

}  // namespace glimmer
