#include "common/bitmap.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "support/pictures.h"

namespace glimmer {
namespace {

using test::noise;

TEST(Bitmap, RefusesSizesThatCannotBe) {
    const int32_t sizes[][2] = {{0, 5}, {5, 0}, {-1, 5}, {200001, 1}, {1, 200001}, {65536, 65536}, {200000, 200000}};
    for (const auto& [width, height] : sizes) {
        const Result<TBitmap> bitmap = TBitmap::create(width, height, PixelFormat::Bgra32);
        EXPECT_FALSE(bitmap.ok()) << width << " x " << height;
        EXPECT_FALSE(bitmap.message().empty());
    }
    EXPECT_FALSE(TBitmap::check(0x100000001LL, 1, PixelFormat::Bgra32).ok());
}

TEST(Bitmap, CopyIsCutAtEveryEdge) {
    for (const PixelFormat format : {PixelFormat::Bgr24, PixelFormat::Bgra32}) {
        const TBitmap source = noise(7, 5, format, 1);
        for (int32_t dx = -9; dx <= 12; ++dx) {
            for (int32_t dy = -7; dy <= 10; ++dy) {
                TBitmap target = noise(11, 9, format, 2);
                const TBitmap before = target.clone().take();
                copyPixels(target, {dx, dy}, source);
                for (int32_t y = 0; y < 9; ++y) {
                    for (int32_t x = 0; x < 11; ++x) {
                        const bool inside = source.bounds().contains({x - dx, y - dy});
                        ASSERT_EQ(target.pixel(x, y), inside ? source.pixel(x - dx, y - dy) : before.pixel(x, y));
                    }
                }
            }
        }
        TBitmap target = noise(11, 9, format, 2);
        const TBitmap before = target.clone().take();
        for (const int32_t far : {INT32_MIN, INT32_MAX}) {
            copyPixels(target, {far, 0}, source);
            copyPixels(target, {0, far}, source);
        }
        EXPECT_TRUE(samePixels(target, before));
    }
}

TEST(Bitmap, TransparencyCountsInAComparison) {
    const TBitmap wide = noise(13, 3, PixelFormat::Bgra32, 3);
    const TBitmap narrow = wide.converted(PixelFormat::Bgr24).take();
    const TBitmap again = narrow.converted(PixelFormat::Bgra32).take();
    EXPECT_TRUE(wide.hasTransparency());
    EXPECT_TRUE(samePixels(narrow, again));
    EXPECT_FALSE(samePixels(wide, again));
}

TEST(Bitmap, FillAndCropStayInside) {
    TBitmap bitmap = TBitmap::create(5, 4, PixelFormat::Bgr24).take();
    bitmap.fill({3, -2, 99, 2}, rgb(1, 2, 3));
    EXPECT_EQ(bitmap.pixel(2, 0), rgb(0, 0, 0));
    EXPECT_EQ(bitmap.pixel(3, 0), rgb(1, 2, 3));
    EXPECT_EQ(bitmap.pixel(4, 1), rgb(1, 2, 3));
    EXPECT_EQ(bitmap.pixel(4, 2), rgb(0, 0, 0));
    const TBitmap part = bitmap.cropped({3, 1, 100, 100}).take();
    EXPECT_EQ(part.size(), (Size{2, 3}));
    EXPECT_EQ(part.pixel(0, 0), rgb(1, 2, 3));
    EXPECT_FALSE(bitmap.cropped({5, 0, 9, 9}).ok());
}

/// Memory that hides its bytes while it is parked.
class ParkingMemory final : public PixelMemory {
public:
    explicit ParkingMemory(size_t count) : bytes_(count) {}
    [[nodiscard]] uint8_t* data() const override { return parked_ ? nullptr : bytes_.data(); }
    bool park() override { return parked_ = true; }
    uint8_t* wake() override {
        parked_ = false;
        return data();
    }

private:
    mutable std::vector<uint8_t> bytes_;
    bool parked_ = false;
};

TEST(Bitmap, AParkedPictureComesBackUnchanged) {
    setPixelAllocator(
        [](size_t count) -> std::unique_ptr<PixelMemory> { return std::make_unique<ParkingMemory>(count); });
    TBitmap bitmap = noise(7, 5, PixelFormat::Bgra32, 5);
    setPixelAllocator(nullptr);
    const TBitmap copy = bitmap.clone().take();
    EXPECT_FALSE(TBitmap().park());
    EXPECT_FALSE(noise(2, 2, PixelFormat::Bgr24, 1).park());  // the heap keeps its addresses
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(bitmap.park());
        EXPECT_TRUE(bitmap.parked());
        EXPECT_EQ(bitmap.size(), (Size{7, 5}));
        TBitmap moved = std::move(bitmap);
        EXPECT_TRUE(moved.wake().ok());
        EXPECT_FALSE(moved.parked());
        EXPECT_TRUE(samePixels(moved, copy));
        bitmap = std::move(moved);
    }
}

}  // namespace
}  // namespace glimmer
