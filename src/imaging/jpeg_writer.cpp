#include <algorithm>

#include "common/assertion.h"
#include "imaging/jpeg_codec.h"
#include "imaging/jpeg_error.h"
#include "imaging/jump_guard.h"

namespace glimmer {

namespace {

/// From here on a user wants sharp coloured text rather than a small file.
constexpr int fullColourQuality = 90;

/// One run of libjpeg's writer into memory. What needs a destructor lives in the object, see runGuarded().
class Encoder {
public:
    Encoder(const TBitmap& bitmap, int quality, const Progress& progress)
        : bitmap_(bitmap), quality_(std::clamp(quality, 1, 100)), progress_(progress) {
        errors_.install(reinterpret_cast<j_common_ptr>(&jpeg_), false);
    }
    ~Encoder() { jpeg_destroy_compress(&jpeg_); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    Encoder(Encoder&&) = delete;
    Encoder& operator=(Encoder&&) = delete;

    Result<std::vector<uint8_t>> run() {
        file_.resize(static_cast<size_t>(64) * 1024);
        if (!runGuarded(errors_.jump, &Encoder::write, this)) {
            if (cancelled_) return cancelled();
            return Failure{"The JPEG picture cannot be written (" + errors_.reason() + ")."};
        }
        file_.resize(file_.size() - target_.free_in_buffer);
        return std::move(file_);
    }

private:
    static void write(void* object) {
        auto* self = static_cast<Encoder*>(object);
        jpeg_compress_struct* jpeg = &self->jpeg_;
        jpeg_create_compress(jpeg);
        jpeg->client_data = self;
        self->target_.init_destination = &Encoder::begin;
        self->target_.empty_output_buffer = &Encoder::grow;
        self->target_.term_destination = &Encoder::end;
        jpeg->dest = &self->target_;
        jpeg->image_width = static_cast<JDIMENSION>(self->bitmap_.width());
        jpeg->image_height = static_cast<JDIMENSION>(self->bitmap_.height());
        jpeg->input_components = 3;
        jpeg->in_color_space = JCS_EXT_BGR;
        jpeg_set_defaults(jpeg);
        jpeg_set_quality(jpeg, self->quality_, TRUE);
        if (self->quality_ >= fullColourQuality) {
            jpeg->comp_info[0].h_samp_factor = 1;
            jpeg->comp_info[0].v_samp_factor = 1;
        }
        jpeg->density_unit = 1;
        jpeg->X_density = 96;
        jpeg->Y_density = 96;
        jpeg_start_compress(jpeg, TRUE);
        for (int32_t y = 0; y < self->bitmap_.height(); ++y) {
            if (!proceed(self->progress_, y, self->bitmap_.height())) {
                self->cancelled_ = true;
                self->errors_.leave("cancelled");
            }
            JSAMPROW row = const_cast<uint8_t*>(self->bitmap_.row(y));
            jpeg_write_scanlines(jpeg, &row, 1);
        }
        jpeg_finish_compress(jpeg);
    }

    static Encoder& of(j_compress_ptr jpeg) { return *static_cast<Encoder*>(jpeg->client_data); }
    static void begin(j_compress_ptr jpeg) {
        Encoder& self = of(jpeg);
        self.target_.next_output_byte = self.file_.data();
        self.target_.free_in_buffer = self.file_.size();
    }
    /// Called when the buffer is full.
    static boolean grow(j_compress_ptr jpeg) {
        Encoder& self = of(jpeg);
        const size_t used = self.file_.size();
        if (!self.enlarge(used * 2)) self.errors_.leave("out of memory");
        self.target_.next_output_byte = self.file_.data() + used;
        self.target_.free_in_buffer = self.file_.size() - used;
        return TRUE;
    }
    static void end(j_compress_ptr) {}
    bool enlarge(size_t size) noexcept {
        try {
            file_.resize(size);
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    const TBitmap& bitmap_;
    const int quality_;
    const Progress& progress_;
    jpeg_compress_struct jpeg_{};
    jpeg_destination_mgr target_{};
    JpegErrors errors_{};
    std::vector<uint8_t> file_;
    bool cancelled_ = false;
};

}  // namespace

Result<std::vector<uint8_t>> encodeJpeg(const TBitmap& bitmap, int quality, const Progress& progress) {
    GLIMMER_ASSERT(bitmap.format() == PixelFormat::Bgr24, "24 bits", "jpeg_writer");
    if (bitmap.width() > JPEG_MAX_DIMENSION || bitmap.height() > JPEG_MAX_DIMENSION)
        return Failure{"A JPEG picture cannot have more than 65500 pixels on a side."};
    return Encoder(bitmap, quality, progress).run();
}

}  // namespace glimmer
