// Reads PNG files with libpng. Only the chunks that the program uses reach the library: header, palette,
// transparency, image data and a bounded number of texts. The private chunks are taken out here, since they may be
// far larger than anything that libpng should be allowed to hold.

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "common/row_conversion.h"
#include "common/text.h"
#include "imaging/colour_table.h"
#include "imaging/jump_guard.h"
#include "imaging/png_chunks.h"
#include "imaging/png_codec.h"
#include "imaging/png_text.h"

namespace glimmer {

namespace {

/// What libpng gets to read: the signature and the chosen chunks, one after the other.
class ChunkFeed {
public:
    explicit ChunkFeed(std::span<const uint8_t> file) : file_(file) {}
    void add(size_t from, size_t count) {
        if (!parts_.empty() && parts_.back().from + parts_.back().count == from)
            parts_.back().count += count;
        else
            parts_.push_back({from, count});
    }
    /// False when fewer bytes are left.
    bool read(uint8_t* to, size_t count) {
        while (count > 0) {
            if (part_ == parts_.size()) return false;
            const size_t now = std::min(count, parts_[part_].count - at_);
            std::memcpy(to, file_.data() + parts_[part_].from + at_, now);
            to += now;
            count -= now;
            at_ += now;
            if (at_ == parts_[part_].count) {
                ++part_;
                at_ = 0;
            }
        }
        return true;
    }

private:
    struct Part {
        size_t from;
        size_t count;
    };
    std::span<const uint8_t> file_;
    std::vector<Part> parts_;
    size_t part_ = 0;
    size_t at_ = 0;
};

bool isPrivate(const PngChunkPlace& chunk) { return chunk.name() == "bBIn" || chunk.name() == "bBPn"; }
bool isText(const PngChunkPlace& chunk) {
    return chunk.name() == "tEXt" || chunk.name() == "zTXt" || chunk.name() == "iTXt";
}
bool isPicture(const PngChunkPlace& chunk) {
    static constexpr std::string_view names[] = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    return std::find(std::begin(names), std::end(names), chunk.name()) != std::end(names);
}
/// A chunk with an upper-case first letter must be understood to show the picture.
bool isCritical(const PngChunkPlace& chunk) { return chunk.type[0] >= 'A' && chunk.type[0] <= 'Z'; }

bool checksumHolds(std::span<const uint8_t> file, const PngChunkPlace& chunk) {
    // Type and data; the length field is not part of it.
    uLong sum = crc32(0, nullptr, 0);
    sum = crc32(sum, file.data() + chunk.offset + 4, static_cast<uInt>(chunk.length + 4));
    return sum == bigEndian32(file.data() + chunk.end() - 4);
}

constexpr size_t longestKeyword = 79;

struct Walk {
    ChunkFeed feed;
    uint64_t imageBytes = 0;  ///< compressed
    std::vector<PngChunkPlace> privates;
    bool privatesRefused = false;
};

/// Sorts the chunks of a file: what libpng gets, and the private ones.
Result<Walk> walk(std::span<const uint8_t> file, const PngBounds& bounds) {
    if (file.size() < pngSignature.size() || !std::equal(pngSignature.begin(), pngSignature.end(), file.begin()))
        return Failure{"The data is not a PNG picture."};
    if (file.size() > bounds.fileBytes) return Failure{"The PNG picture is too large."};
    Walk result{ChunkFeed(file), 0, {}, false};
    result.feed.add(0, pngSignature.size());
    size_t texts = 0;
    size_t privateBytes = 0;
    size_t at = pngSignature.size();
    for (size_t count = 0; count < PngLimits::chunks; ++count) {
        const Failure cutShort{"The PNG picture is cut short."};
        if (file.size() - at < 12) return cutShort;
        const std::optional<PngChunkPlace> chunk = parseChunkHeader(file.subspan(at).first<8>(), at);
        if (!chunk || (count == 0) != (chunk->name() == "IHDR")) return Failure{"The PNG picture is damaged."};
        if (chunk->length > file.size() - at - 12) return cutShort;
        if (isPicture(*chunk)) {
            result.feed.add(at, chunk->length + 12);
            if (chunk->name() == "IDAT") result.imageBytes += chunk->length;
        } else if (isText(*chunk)) {
            if (chunk->length <= PngLimits::textBytes && texts++ < PngLimits::texts && checksumHolds(file, *chunk))
                result.feed.add(at, chunk->length + 12);
        } else if (isPrivate(*chunk)) {
            privateBytes += chunk->length;
            if (result.privates.size() == bounds.privateChunks || privateBytes > bounds.privateBytes ||
                !checksumHolds(file, *chunk))
                result.privatesRefused = true;
            if (!result.privatesRefused) result.privates.push_back(*chunk);
        } else if (isCritical(*chunk)) {
            return Failure{"The PNG picture has a part that this program does not know."};
        }
        at = chunk->end();
        if (chunk->name() == "IEND") return result;
    }
    return Failure{"The PNG picture has too many parts."};
}

/// One run of libpng's reader. What needs a destructor lives in the object, see runGuarded().
class Decoder {
public:
    explicit Decoder(Walk& chunks) : feed_(chunks.feed), imageBytes_(chunks.imageBytes) {
        png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, &Decoder::fail, &Decoder::ignoreWarning);
        if (png_ != nullptr) info_ = png_create_info_struct(png_);
    }
    ~Decoder() { png_destroy_read_struct(&png_, &info_, nullptr); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    Decoder(Decoder&&) = delete;
    Decoder& operator=(Decoder&&) = delete;

    Status run(TBitmap& bitmap) {
        if (info_ == nullptr) return Failure{"There is not enough memory to read the picture."};
        if (!runGuarded(png_jmpbuf(png_), &Decoder::readHeader, this)) return failure();
        // Deflate packs at most 1032 bytes into one; a header that promises more is not worth any memory.
        if (rawBytes_ > imageBytes_ * 1032 + 1032) return Failure{"The PNG picture is cut short."};
        Result<TBitmap> made =
            TBitmap::create(static_cast<int32_t>(width_), static_cast<int32_t>(height_), PixelFormat::Bgra32);
        if (!made) return made.failure();
        bitmap_ = made.take();
        if (layout_ != Layout::Bgra) row_.resize(static_cast<size_t>(width_) * 3);
        if (!runGuarded(png_jmpbuf(png_), &Decoder::readRows, this)) return failure();
        bitmap = std::move(bitmap_);
        return {};
    }

    [[nodiscard]] std::vector<PngText> texts() const {
        std::vector<PngText> result;
        png_textp text = nullptr;
        int count = 0;
        png_get_text(png_, info_, &text, &count);
        for (int i = 0; i < count; ++i) {
            const png_text& one = text[i];
            const std::string keyword = one.key;
            // The format forbids these; the library lets them pass.
            if (keyword.empty() || keyword.size() > longestKeyword) continue;
            const bool international = one.compression >= PNG_ITXT_COMPRESSION_NONE;
            // Without a text, libpng gives a length of 0 and no promise about the pointer.
            const size_t length = international ? one.itxt_length : one.text_length;
            const std::string bytes = length == 0 ? std::string() : std::string(one.text, length);
            result.push_back({keyword, fromPngText(bytes)});  // an international one need not be UTF-8 either
        }
        return result;
    }

private:
    [[noreturn]] static void fail(png_structp png, png_const_charp message) {
        auto* self = static_cast<Decoder*>(png_get_error_ptr(png));
        std::snprintf(self->message_, sizeof self->message_, "%s", message);
        png_longjmp(png, 1);
    }
    static void ignoreWarning(png_structp, png_const_charp) {}
    static void read(png_structp png, png_bytep to, size_t count) {
        if (!static_cast<Decoder*>(png_get_io_ptr(png))->feed_.read(to, count)) png_error(png, "cut short");
    }

    static void readHeader(void* object) {
        auto* self = static_cast<Decoder*>(object);
        png_structp png = self->png_;
        png_infop info = self->info_;
        png_set_read_fn(png, self, &Decoder::read);
        png_set_user_limits(png, TBitmap::maxSide, TBitmap::maxSide);
        png_set_chunk_malloc_max(png, PngLimits::textBytes + longestKeyword + 3);  // it counts the keyword too
        png_set_chunk_cache_max(png, PngLimits::texts + 1);
        png_read_info(png, info);
        self->width_ = png_get_image_width(png, info);
        self->height_ = png_get_image_height(png, info);
        self->rawBytes_ = uint64_t{png_get_rowbytes(png, info)} * self->height_;
        self->chooseLayout();
        self->passes_ = png_set_interlace_handling(png);
        png_read_update_info(png, info);
        const size_t bytes = self->layout_ == Layout::Bgra ? 4 : self->layout_ == Layout::Rgb ? 3 : 1;
        if (png_get_rowbytes(png, info) != static_cast<size_t>(self->width_) * bytes) png_error(png, "wrong row size");
    }

    /// The commonest kinds are read as they are and put in place here, at more than twice the library's speed; all
    /// others the library turns into what a bitmap holds.
    void chooseLayout() {
        const int colourType = png_get_color_type(png_, info_);
        const bool straight = png_get_interlace_type(png_, info_) == PNG_INTERLACE_NONE;
        const bool transparent = png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
        if (straight && colourType == PNG_COLOR_TYPE_RGB && png_get_bit_depth(png_, info_) == 8 && !transparent) {
            layout_ = Layout::Rgb;
        } else if (straight && colourType == PNG_COLOR_TYPE_PALETTE) {
            layout_ = Layout::Indices;
            png_set_packing(png_);
            readPalette();
        } else {
            png_set_scale_16(png_);
            png_set_expand(png_);
            png_set_gray_to_rgb(png_);
            png_set_bgr(png_);
            png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
        }
    }

    void readPalette() {
        png_colorp colours = nullptr;
        png_bytep alphas = nullptr;
        int count = 0;
        int alphaCount = 0;
        png_get_PLTE(png_, info_, &colours, &count);
        png_get_tRNS(png_, info_, &alphas, &alphaCount, nullptr);
        // A number outside the palette is black.
        palette_.fill(opaquePixel(0, 0, 0));
        for (int i = 0; i < count; ++i) {
            const Pixel alpha = i < alphaCount ? alphas[i] : 255U;
            palette_[static_cast<size_t>(i)] =
                (opaquePixel(colours[i].red, colours[i].green, colours[i].blue) & 0xFFFFFFU) | alpha << 24U;
        }
    }

    static void put(uint8_t* to, Pixel pixel) {
        // All our systems store the low byte first.
        std::memcpy(to, &pixel, sizeof pixel);
    }

    void placeRow(uint8_t* to) const {
        // Copies, since the compiler must take a byte written for one of this object's members.
        const uint8_t* from = row_.data();
        const size_t width = width_;
        const Pixel* palette = palette_.data();
        if (layout_ == Layout::Rgb) {
            widenRow(to, from, width);
            swapRedAndBlue(to, to, width);
        } else {
            for (size_t x = 0; x < width; ++x) put(to + x * 4, palette[from[x]]);
        }
    }

    static void readRows(void* object) {
        auto* self = static_cast<Decoder*>(object);
        const int32_t height = self->bitmap_.height();
        if (self->layout_ != Layout::Bgra) {
            for (int32_t y = 0; y < height; ++y) {
                png_read_row(self->png_, self->row_.data(), nullptr);
                self->placeRow(self->bitmap_.row(y));
            }
            png_read_end(self->png_, self->info_);
            return;
        }
        for (int pass = 0; pass < self->passes_; ++pass)
            for (int32_t y = 0; y < height; ++y) png_read_row(self->png_, self->bitmap_.row(y), nullptr);
        png_read_end(self->png_, self->info_);
    }

    [[nodiscard]] Failure failure() const {
        return Failure{std::string("The PNG picture is damaged (") + message_ + ")."};
    }

    ChunkFeed& feed_;
    const uint64_t imageBytes_;
    uint64_t rawBytes_ = 0;
    TBitmap bitmap_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    png_uint_32 width_ = 0;
    png_uint_32 height_ = 0;
    int passes_ = 1;
    enum class Layout : uint8_t { Bgra, Rgb, Indices } layout_ = Layout::Bgra;  ///< of the rows that libpng hands out
    std::array<Pixel, 256> palette_{};
    std::vector<uint8_t> row_;
    char message_[120] = "";
};

}  // namespace

Result<PngPicture> readPng(std::span<const uint8_t> file, const PngBounds& bounds) {
    Result<Walk> chunks = walk(file, bounds);
    if (!chunks) return chunks.failure();
    PngPicture picture;
    Decoder decoder(*chunks);
    if (Status done = decoder.run(picture.bitmap); !done) return done.failure();
    picture.extras.texts = decoder.texts();
    picture.chunksRefused = chunks->privatesRefused;
    if (!picture.chunksRefused) {
        for (const PngChunkPlace& place : chunks->privates) {
            const std::span<const uint8_t> data = file.subspan(place.dataOffset(), place.length);
            picture.extras.chunks.push_back({std::string(place.name()), {data.begin(), data.end()}});
        }
    }
    return picture;
}

}  // namespace glimmer
