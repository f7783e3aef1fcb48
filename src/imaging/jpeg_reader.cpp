#include <algorithm>

#include "imaging/jpeg_codec.h"
#include "imaging/jpeg_error.h"
#include "imaging/jump_guard.h"

namespace glimmer {

namespace {

/// Honest encoders write about ten; each further one costs a pass over the whole picture.
constexpr int maxScans = 100;
/// A picture of one colour needs at least a bit for each block of 8 x 8 in its first scan; this allows for colour
/// at a quarter of the resolution besides.
constexpr uint64_t maxPixelsPerByte = uint64_t{8} * 64 * 16;

/// Ink and black as they are stored by Adobe's programs, 255 for none.
uint8_t onPaper(unsigned ink, unsigned black) { return static_cast<uint8_t>((ink * black + 127) / 255); }

/// One run of libjpeg's reader. What needs a destructor lives in the object, see runGuarded().
class Decoder {
public:
    explicit Decoder(std::span<const uint8_t> file) : file_(file) {
        errors_.install(reinterpret_cast<j_common_ptr>(&jpeg_), true);
    }
    ~Decoder() { jpeg_destroy_decompress(&jpeg_); }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    Decoder(Decoder&&) = delete;
    Decoder& operator=(Decoder&&) = delete;

    Result<TBitmap> run() {
        if (!runGuarded(errors_.jump, &Decoder::readHeader, this)) return failure();
        if (Status fits = TBitmap::check(jpeg_.image_width, jpeg_.image_height, PixelFormat::Bgr24); !fits)
            return fits.failure();
        if (static_cast<uint64_t>(jpeg_.image_width) * jpeg_.image_height > file_.size() * maxPixelsPerByte)
            return Failure{"The JPEG picture is cut short."};
        const int orientation = storedOrientation();
        Result<TBitmap> made = TBitmap::create(static_cast<int32_t>(jpeg_.image_width),
                                               static_cast<int32_t>(jpeg_.image_height), PixelFormat::Bgr24);
        if (!made) return made;
        bitmap_ = made.take();
        if (inks()) inkRow_.resize(static_cast<size_t>(jpeg_.image_width) * 4);
        if (!runGuarded(errors_.jump, &Decoder::readRows, this)) return failure();
        return oriented(std::move(bitmap_), orientation);
    }

private:
    static void readHeader(void* object) {
        auto* self = static_cast<Decoder*>(object);
        jpeg_decompress_struct* jpeg = &self->jpeg_;
        jpeg_create_decompress(jpeg);
        self->progress_.progress_monitor = &Decoder::limitScans;
        jpeg->progress = &self->progress_;
        jpeg->client_data = self;
        jpeg_mem_src(jpeg, self->file_.data(), static_cast<unsigned long>(self->file_.size()));
        jpeg_save_markers(jpeg, JPEG_APP0 + 1, 0xFFFF);
        jpeg_read_header(jpeg, TRUE);
    }

    static void readRows(void* object) {
        auto* self = static_cast<Decoder*>(object);
        jpeg_decompress_struct* jpeg = &self->jpeg_;
        jpeg->out_color_space = self->inks() ? JCS_CMYK : JCS_EXT_BGR;
        jpeg_start_decompress(jpeg);
        while (jpeg->output_scanline < jpeg->output_height) {
            uint8_t* row = self->bitmap_.row(static_cast<int32_t>(jpeg->output_scanline));
            JSAMPROW target = self->inks() ? self->inkRow_.data() : row;
            jpeg_read_scanlines(jpeg, &target, 1);
            if (self->inks()) self->mixInks(row);
        }
        jpeg_finish_decompress(jpeg);
    }

    static void limitScans(j_common_ptr library) {
        auto* self = static_cast<Decoder*>(library->client_data);
        if (self->jpeg_.input_scan_number > maxScans) self->errors_.leave("too many scans");
    }

    [[nodiscard]] bool inks() const { return jpeg_.jpeg_color_space == JCS_CMYK || jpeg_.jpeg_color_space == JCS_YCCK; }

    void mixInks(uint8_t* to) const {
        // Adobe's programs store inks inverted; without their mark they are as the standard says.
        const unsigned flip = jpeg_.saw_Adobe_marker != FALSE ? 0 : 255;
        const uint8_t* from = inkRow_.data();
        for (JDIMENSION x = 0; x < jpeg_.image_width; ++x, from += 4, to += 3) {
            const unsigned black = from[3] ^ flip;
            to[0] = onPaper(from[2] ^ flip, black);
            to[1] = onPaper(from[1] ^ flip, black);
            to[2] = onPaper(from[0] ^ flip, black);
        }
    }

    [[nodiscard]] int storedOrientation() const {
        for (jpeg_saved_marker_ptr marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
            const int orientation = exifOrientation({marker->data, marker->data_length});
            if (orientation != 1) return orientation;
        }
        return 1;
    }

    [[nodiscard]] Failure failure() const { return Failure{"The JPEG picture is damaged (" + errors_.reason() + ")."}; }

    std::span<const uint8_t> file_;
    jpeg_decompress_struct jpeg_{};
    jpeg_progress_mgr progress_{};
    JpegErrors errors_{};
    TBitmap bitmap_;
    std::vector<uint8_t> inkRow_;
};

}  // namespace

Result<TBitmap> readJpeg(std::span<const uint8_t> file) {
    if (file.size() < 3 || file[0] != 0xFF || file[1] != 0xD8 || file[2] != 0xFF)
        return Failure{"The data is not a JPEG picture."};
    return Decoder(file).run();
}

}  // namespace glimmer
