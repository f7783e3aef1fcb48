#include "imaging/gif_codec.h"

#include <gif_lib.h>
#include <gtest/gtest.h>

#include <set>

#include "imaging/quantiser.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

using Bytes = std::vector<uint8_t>;

struct GifKind {
    Size screen{8, 12};
    Rect frame{0, 0, 8, 12};
    bool interlaced = false;
    int transparent = -1;
    bool localColours = false;
    int comments = 0;
};

/// Colour number of a frame's pixel in the files made below.
uint8_t indexAt(int32_t x, int32_t y) { return static_cast<uint8_t>((x + 3 * y) % 4); }
Colour colourOf(uint8_t index) { return rgb(index * 60U, 255U - index * 40U, index * 11U); }

Bytes makeGif(const GifKind& kind) {
    Bytes file;
    int error = 0;
    GifFileType* gif = EGifOpen(
        &file,
        [](GifFileType* self, const GifByteType* data, int count) {
            auto* target = static_cast<Bytes*>(self->UserData);
            target->insert(target->end(), data, data + count);
            return count;
        },
        &error);
    ColorMapObject* map = GifMakeMapObject(4, nullptr);
    for (int i = 0; i < 4; ++i) {
        const Colour colour = colourOf(static_cast<uint8_t>(i));
        map->Colors[i] = {redOf(colour), greenOf(colour), blueOf(colour)};
    }
    EGifSetGifVersion(gif, true);
    EGifPutScreenDesc(gif, kind.screen.width, kind.screen.height, 2, 0, kind.localColours ? nullptr : map);
    for (int i = 0; i < kind.comments; ++i) EGifPutComment(gif, "a comment");
    if (kind.transparent >= 0) {
        GifByteType block[4];
        EGifGCBToExtension(std::array<GraphicsControlBlock, 1>{{{0, false, 0, kind.transparent}}}.data(), block);
        EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, block);
    }
    EGifPutImageDesc(gif, kind.frame.left, kind.frame.top, kind.frame.width(), kind.frame.height(), kind.interlaced,
                     kind.localColours ? map : nullptr);
    const std::vector<std::pair<int32_t, int32_t>> passes =
        kind.interlaced ? std::vector<std::pair<int32_t, int32_t>>{{0, 8}, {4, 8}, {2, 4}, {1, 2}}
                        : std::vector<std::pair<int32_t, int32_t>>{{0, 1}};
    for (const auto& [first, step] : passes) {
        for (int32_t y = first; y < kind.frame.height(); y += step) {
            Bytes row;
            for (int32_t x = 0; x < kind.frame.width(); ++x) row.push_back(indexAt(x, y));
            EGifPutLine(gif, row.data(), kind.frame.width());
        }
    }
    EGifCloseFile(gif, &error);
    GifFreeMapObject(map);
    return file;
}

TEST(GifReader, ReadsTheFirstFrame) {
    const GifKind kinds[] = {
        {},
        {{8, 12}, {0, 0, 8, 12}, true},
        {{8, 12}, {0, 0, 8, 12}, false, 2},
        {{10, 9}, {3, 2, 8, 7}},
        {{10, 9}, {3, 2, 8, 7}, true, 0, true},
        {{5, 5}, {2, 2, 9, 9}},   // beyond the area: cut
        {{0, 0}, {0, 0, 8, 12}},  // no area: the frame's
        {{8, 12}, {0, 0, 8, 12}, false, -1, false, 300},
    };
    for (const GifKind& kind : kinds) {
        const Bytes file = makeGif(kind);
        SCOPED_TRACE(testing::Message() << "case " << (&kind - kinds));
        const Result<TBitmap> bitmap = readGif(file);
        ASSERT_TRUE(bitmap.ok()) << bitmap.message();
        ASSERT_EQ(bitmap->size(), kind.screen.width == 0 ? (Size{8, 12}) : kind.screen);
        for (int32_t y = 0; y < bitmap->height(); ++y) {
            for (int32_t x = 0; x < bitmap->width(); ++x) {
                const bool inside = kind.frame.contains({x, y});
                const uint8_t index = inside ? indexAt(x - kind.frame.left, y - kind.frame.top) : uint8_t{0};
                const bool seen = inside && index != kind.transparent;
                ASSERT_EQ(bitmap->alpha(x, y), seen ? 255 : 0) << x << "," << y;
                if (seen) {
                    ASSERT_EQ(bitmap->pixel(x, y), colourOf(index)) << x << "," << y;
                }
            }
        }
        test::expectNoCrash(file, [](const Bytes& damaged) { return readGif(damaged).ok(); });
    }
}

TEST(GifReader, RefusesBombs) {
    Bytes file = makeGif({{8, 12}, {0, 0, 8, 12}});
    for (size_t i = 10; i + 9 < file.size(); ++i) {
        if (file[i] != ',') continue;
        for (const size_t at : {i + 5, i + 7}) {
            file[at] = 0x40;
            file[at + 1] = 0x9C;  // 40000
        }
        break;
    }
    EXPECT_FALSE(readGif(file).ok());
    EXPECT_TRUE(readGif(makeGif({{3000, 3000}, {0, 0, 8, 12}})).ok()) << "a small frame on a large screen";
    EXPECT_FALSE(readGif(makeGif({{20000, 10000}, {0, 0, 8, 12}})).ok()) << "800 MB for a file of a few bytes";
    EXPECT_FALSE(readGif(Bytes{'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0, 0, 0, ';'}).ok()) << "no frame";
}

TEST(GifWriter, KeepsPicturesOfFewColours) {
    for (const unsigned colours : {1U, 2U, 3U, 16U, 17U, 200U}) {
        const TBitmap bitmap = test::page(150, 100, PixelFormat::Bgr24, colours);
        const Result<Bytes> file = encodeGif(bitmap, {});
        ASSERT_TRUE(file.ok()) << file.message();
        const Result<TBitmap> again = readGif(*file);
        ASSERT_TRUE(again.ok()) << again.message();
        EXPECT_TRUE(samePixels(*again, bitmap)) << colours;
    }
}

/// Mean square of the difference of all channels, after averaging over 4 x 4 pixels, as the eye does.
double blurredError(const TBitmap& a, const TBitmap& b) {
    double sum = 0;
    int64_t count = 0;
    for (int32_t y = 0; y + 4 <= a.height(); y += 4) {
        for (int32_t x = 0; x + 4 <= a.width(); x += 4) {
            double d[3] = {0, 0, 0};
            for (int32_t i = 0; i < 16; ++i) {
                const Colour p = a.pixel(x + i % 4, y + i / 4);
                const Colour q = b.pixel(x + i % 4, y + i / 4);
                d[0] += redOf(p) - redOf(q);
                d[1] += greenOf(p) - greenOf(q);
                d[2] += blueOf(p) - blueOf(q);
            }
            for (const double one : d) sum += one * one / 256;
            count += 3;
        }
    }
    return sum / static_cast<double>(count);
}

TEST(GifWriter, TextStaysCrispAndShadesComeNear) {
    // A page of a few colours with a photograph in it.
    TBitmap bitmap = test::page(400, 300, PixelFormat::Bgr24, 20);
    const TBitmap photograph = test::gradient(160, 120, PixelFormat::Bgr24);
    copyPixels(bitmap, {200, 100}, photograph);
    const Result<TBitmap> again = readGif(encodeGif(bitmap, {}).take());
    ASSERT_TRUE(again.ok()) << again.message();
    const Rect shaded{200, 100, 360, 220};
    int different = 0;
    std::set<Colour> colours;
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        for (int32_t x = 0; x < bitmap.width(); ++x) {
            colours.insert(again->pixel(x, y));
            if (!shaded.contains({x, y}) && bitmap.pixel(x, y) != again->pixel(x, y)) ++different;
        }
    }
    EXPECT_LE(colours.size(), 256U);
    // Outside the photograph only colours too rare to be kept may differ.
    EXPECT_LT(different, bitmap.width() * bitmap.height() / 1000);
    const TBitmap part = again->cropped(shaded).take();
    EXPECT_LT(blurredError(part, photograph), 9.0);
    // Noise holds no representative colours at all; it must come out with the right means even so.
    const TBitmap noisy = test::noise(128, 128, PixelFormat::Bgr24, 8);
    EXPECT_LT(blurredError(*readGif(encodeGif(noisy, {}).take()), noisy), 60.0);
}

TEST(GifWriter, RefusesWhatTheFormatCannotHold) {
    EXPECT_FALSE(encodeGif(TBitmap::create(65536, 1, PixelFormat::Bgr24).take(), {}).ok());
    EXPECT_TRUE(encodeGif(TBitmap::create(65535, 1, PixelFormat::Bgr24).take(), {}).ok());
    EXPECT_FALSE(encodeGif(test::page(64, 300, PixelFormat::Bgr24, 9), [](double part) { return part < 0.4; }).ok());
}

TEST(Representatives, MeansOfClusters) {
    std::vector<ColourCount> colours;
    for (uint32_t i = 0; i < 8; ++i) {
        colours.push_back({opaquePixel(10 + i % 2, 20, 30), 5});
        colours.push_back({opaquePixel(200, 100 + i % 2, 30), 5});
    }
    const std::vector<Pixel> two = representatives(colours, 2);
    ASSERT_EQ(two.size(), 2U);
    EXPECT_EQ(std::set<Pixel>(two.begin(), two.end()),
              (std::set<Pixel>{opaquePixel(11, 20, 30), opaquePixel(200, 101, 30)}));
    EXPECT_TRUE(representatives({}, 5).empty());
    EXPECT_EQ(representatives(colours, 256).size(), 2U) << "no part of a box is empty";
}

}  // namespace
}  // namespace glimmer
