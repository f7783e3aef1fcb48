#include "imaging/jpeg_codec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "support/pictures.h"

namespace glimmer {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr int32_t width = 96;
constexpr int32_t height = 64;
constexpr Colour red = rgb(220, 30, 20);
constexpr Colour green = rgb(20, 200, 40);
constexpr Colour blue = rgb(30, 40, 210);
constexpr Colour grey = rgb(200, 200, 200);

/// Four areas of one colour, as they lie in the file.
TBitmap quarters() {
    TBitmap bitmap = TBitmap::create(width, height, PixelFormat::Bgr24).take();
    bitmap.fill({0, 0, width / 2, height / 2}, red);
    bitmap.fill({width / 2, 0, width, height / 2}, green);
    bitmap.fill({0, height / 2, width / 2, height}, blue);
    bitmap.fill({width / 2, height / 2, width, height}, grey);
    return bitmap;
}

bool near(Colour a, Colour b) {
    const auto close = [](int x, int y) { return std::abs(x - y) <= 6; };
    return close(redOf(a), redOf(b)) && close(greenOf(a), greenOf(b)) && close(blueOf(a), blueOf(b));
}

std::vector<Colour> quartersOf(const TBitmap& bitmap) {
    const int32_t w = bitmap.width();
    const int32_t h = bitmap.height();
    return {bitmap.pixel(w / 4, h / 4), bitmap.pixel(w * 3 / 4, h / 4), bitmap.pixel(w / 4, h * 3 / 4),
            bitmap.pixel(w * 3 / 4, h * 3 / 4)};
}

struct Kind {
    const char* name;
    J_COLOR_SPACE stored = JCS_YCbCr;
    bool progressive = false;
    bool arithmetic = false;
    int horizontal = 2;
    int vertical = 2;
    int restart = 0;
    bool adobe = true;  ///< for inks: the mark, with inverted values
    int scans = 0;      ///< so many scans of one coefficient each
};

/// A file of the wanted kind, made by the library's own interface.
Bytes makeJpeg(const Kind& kind) {
    const TBitmap bitmap = quarters();
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &data, &size);
    const bool inks = kind.stored == JCS_CMYK || kind.stored == JCS_YCCK;
    jpeg.image_width = width;
    jpeg.image_height = height;
    jpeg.input_components = inks ? 4 : 3;
    jpeg.in_color_space = inks ? JCS_CMYK : JCS_EXT_BGR;
    jpeg_set_defaults(&jpeg);
    jpeg_set_colorspace(&jpeg, kind.stored);
    jpeg_set_quality(&jpeg, 95, TRUE);
    jpeg.comp_info[0].h_samp_factor = kind.horizontal;
    jpeg.comp_info[0].v_samp_factor = kind.vertical;
    if (kind.stored == JCS_YCCK) {
        jpeg.comp_info[3].h_samp_factor = kind.horizontal;
        jpeg.comp_info[3].v_samp_factor = kind.vertical;
    }
    if (kind.progressive) jpeg_simple_progression(&jpeg);
    std::vector<jpeg_scan_info> scans;
    if (kind.scans > 0) {
        scans.push_back({3, {0, 1, 2}, 0, 0, 0, 0});
        // The same coefficient again and again would be refused on writing, so the list goes over all of them.
        for (int i = 1; i < kind.scans; ++i)
            scans.push_back({1, {i / 63 % 3}, 1 + (i - 1) % 63, 1 + (i - 1) % 63, 0, 0});
        jpeg.scan_info = scans.data();
        jpeg.num_scans = static_cast<int>(scans.size());
    }
    jpeg.arith_code = kind.arithmetic ? TRUE : FALSE;
    jpeg.restart_interval = static_cast<unsigned>(kind.restart);
    if (inks) jpeg.write_Adobe_marker = kind.adobe ? TRUE : FALSE;
    jpeg_start_compress(&jpeg, TRUE);
    Bytes row(static_cast<size_t>(width) * 4);
    for (int32_t y = 0; y < height; ++y) {
        const uint8_t* from = bitmap.row(y);
        if (inks) {
            for (size_t x = 0; x < static_cast<size_t>(width); ++x) {
                // No black; Adobe stores what is left of the light.
                for (size_t c = 0; c < 3; ++c) {
                    const uint8_t light = from[x * 3 + 2 - c];
                    row[x * 4 + c] = kind.adobe ? light : static_cast<uint8_t>(255 - light);
                }
                row[x * 4 + 3] = kind.adobe ? 255 : 0;
            }
        } else {
            std::copy_n(from, static_cast<size_t>(width) * 3, row.begin());
        }
        JSAMPROW pointer = row.data();
        jpeg_write_scanlines(&jpeg, &pointer, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    Bytes file(data, data + size);
    std::free(data);
    return file;
}

TEST(JpegReader, ReadsEveryKind) {
    const Kind kinds[] = {
        {"plain"},
        {"full colour", JCS_YCbCr, false, false, 1, 1},
        {"half one way", JCS_YCbCr, false, false, 2, 1},
        {"quarter", JCS_YCbCr, false, false, 4, 1},
        {"progressive", JCS_YCbCr, true},
        {"arithmetic", JCS_YCbCr, false, true},
        {"progressive arithmetic", JCS_YCbCr, true, true},
        {"restarts", JCS_YCbCr, false, false, 2, 2, 3},
        {"RGB", JCS_RGB, false, false, 1, 1},
        {"inks of Adobe", JCS_CMYK, false, false, 1, 1},
        {"inks of the standard", JCS_CMYK, false, false, 1, 1, 0, false},
        {"YCCK", JCS_YCCK, false, false, 2, 2},
        {"progressive YCCK", JCS_YCCK, true, false, 1, 1},
        {"grey", JCS_GRAYSCALE, false, false, 1, 1},
    };
    for (const Kind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        const Bytes file = makeJpeg(kind);
        const Result<TBitmap> bitmap = readJpeg(file);
        ASSERT_TRUE(bitmap.ok()) << bitmap.message();
        ASSERT_EQ(bitmap->size(), (Size{width, height}));
        EXPECT_EQ(bitmap->format(), PixelFormat::Bgr24);
        const std::vector<Colour> seen = quartersOf(*bitmap);
        std::vector<Colour> expected{red, green, blue, grey};
        if (kind.stored == JCS_GRAYSCALE) {
            for (Colour& colour : expected) {
                const auto light = static_cast<uint32_t>(
                    std::lround(0.299 * redOf(colour) + 0.587 * greenOf(colour) + 0.114 * blueOf(colour)));
                colour = rgb(light, light, light);
            }
        }
        for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(near(seen[i], expected[i])) << i << " " << std::hex << seen[i];
        test::expectNoCrash(file, [](const Bytes& damaged) { return readJpeg(damaged).ok(); });
    }
}

Bytes withExif(const Bytes& file, uint16_t orientation, bool big) {
    Bytes segment;
    for (const char c : std::string("Exif\0\0", 6)) segment.push_back(static_cast<uint8_t>(c));
    const auto u16 = [&](unsigned value) {
        segment.push_back(static_cast<uint8_t>(big ? value >> 8U : value));
        segment.push_back(static_cast<uint8_t>(big ? value : value >> 8U));
    };
    const auto u32 = [&](unsigned value) {
        u16(big ? value >> 16U : value & 0xFFFFU);
        u16(big ? value & 0xFFFFU : value >> 16U);
    };
    segment.insert(segment.end(), 2, big ? 'M' : 'I');
    u16(42);
    u32(8);
    u16(2);
    u16(0x010F);  // another field first
    u16(2);
    u32(4);
    u32(0);
    u16(0x0112);
    u16(3);
    u32(1);
    u16(orientation);
    u16(0);
    u32(0);
    Bytes result(file.begin(), file.begin() + 2);
    for (const size_t byte : {size_t{0xFF}, size_t{0xE1}, (segment.size() + 2) >> 8U, segment.size() + 2})
        result.push_back(static_cast<uint8_t>(byte));
    result.insert(result.end(), segment.begin(), segment.end());
    result.insert(result.end(), file.begin() + 2, file.end());
    return result;
}

TEST(JpegReader, TurnsAsTheOrientationSays) {
    const Bytes file = makeJpeg({"plain"});
    struct Case {
        uint16_t orientation;
        std::vector<Colour> seen;
    };
    const Case cases[] = {
        {1, {red, green, blue, grey}}, {2, {green, red, grey, blue}}, {3, {grey, blue, green, red}},
        {4, {blue, grey, red, green}}, {5, {red, blue, green, grey}}, {6, {blue, red, grey, green}},
        {7, {grey, green, blue, red}}, {8, {green, grey, red, blue}}, {0, {red, green, blue, grey}},
        {9, {red, green, blue, grey}},
    };
    for (const Case& one : cases) {
        for (const bool big : {false, true}) {
            SCOPED_TRACE(testing::Message() << one.orientation << (big ? " big" : " little"));
            const Bytes turned = withExif(file, one.orientation, big);
            const Result<TBitmap> bitmap = readJpeg(turned);
            ASSERT_TRUE(bitmap.ok()) << bitmap.message();
            const bool swapped = one.orientation >= 5 && one.orientation <= 8;
            EXPECT_EQ(bitmap->size(), (swapped ? Size{height, width} : Size{width, height}));
            const std::vector<Colour> seen = quartersOf(*bitmap);
            for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(near(seen[i], one.seen[i])) << i;
            // The segment alone, cut at every place.
            const std::span<const uint8_t> segment = std::span(turned).subspan(6, 52);
            for (size_t length = 0; length < segment.size(); ++length) {
                const Bytes part(segment.begin(), segment.begin() + static_cast<std::ptrdiff_t>(length));
                const int answer = exifOrientation(part);
                EXPECT_TRUE(answer >= 1 && answer <= 8);
            }
        }
    }
}

TEST(JpegReader, RefusesDamageAndBombs) {
    const Bytes file = makeJpeg({"plain"});
    EXPECT_FALSE(readJpeg(std::span(file).first(file.size() / 2)).ok()) << "cut in half";
    const Kind many{"many scans", JCS_YCbCr, true, false, 1, 1, 0, true, 150};
    EXPECT_FALSE(readJpeg(makeJpeg(many)).ok()) << "too many scans";
    EXPECT_TRUE(readJpeg(makeJpeg({"fewer scans", JCS_YCbCr, true, false, 1, 1, 0, true, 60})).ok());
    const auto claiming = [&file](Size size) {
        Bytes large = file;
        const Bytes header{0xFF, 0xC0};
        const auto at = std::search(large.begin(), large.end(), header.begin(), header.end()) + 5;
        const int32_t bytes[] = {size.height >> 8, size.height & 255, size.width >> 8, size.width & 255};
        std::transform(std::begin(bytes), std::end(bytes), at, [](int32_t b) { return static_cast<uint8_t>(b); });
        return large;
    };
    EXPECT_FALSE(readJpeg(claiming({65500, 65500})).ok());
    // These pass the limit of a picture, but so little data cannot hold them.
    EXPECT_EQ(readJpeg(claiming({20000, 15000})).message(), "The JPEG picture is cut short.");
}

TEST(JpegWriter, QualityGovernsSizeAndError) {
    const TBitmap bitmap = test::gradient(200, 150, PixelFormat::Bgr24);
    size_t last = 0;
    for (const int quality : {1, 30, 80, 100}) {
        const Bytes file = encodeJpeg(bitmap, quality, {}).take();
        EXPECT_GT(file.size(), last);
        last = file.size();
        EXPECT_EQ(readJpeg(file)->size(), bitmap.size());
    }
    EXPECT_EQ(encodeJpeg(bitmap, 0, {}).take(), encodeJpeg(bitmap, 1, {}).take());
    EXPECT_EQ(encodeJpeg(bitmap, 1000, {}).take(), encodeJpeg(bitmap, 100, {}).take());
    const TBitmap flat = quarters();
    const std::vector<Colour> seen = quartersOf(*readJpeg(encodeJpeg(flat, 80, {}).take()));
    for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(near(seen[i], quartersOf(flat)[i]));
    EXPECT_FALSE(encodeJpeg(TBitmap::create(70000, 1, PixelFormat::Bgr24).take(), 80, {}).ok());
    EXPECT_EQ(encodeJpeg(bitmap, 80, [](double part) { return part < 0.5; }).message(), "The operation was cancelled.");
}

}  // namespace
}  // namespace glimmer
