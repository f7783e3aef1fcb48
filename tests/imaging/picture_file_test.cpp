#include "imaging/picture_file.h"

#include <gtest/gtest.h>

#include "common/assertion.h"
#include "support/pictures.h"
#include "support/png_maker.h"
#include "support/scratch_folder.h"
#include "support/tools.h"

namespace glimmer {
namespace {

using Bytes = std::vector<uint8_t>;

TEST(PictureFormats, AreFoundByNumberAndName) {
    for (const int outside : {-1, 5, 100, INT32_MIN}) EXPECT_EQ(extensionOf(outside), ".pdf");
    EXPECT_EQ(formatOfName("C:\\a.b\\x.PNG"), PictureFormat::Png);
    EXPECT_EQ(formatOfName("x.jpeg"), PictureFormat::Jpeg);
    EXPECT_EQ(formatOfName("folder.png\\x"), std::nullopt);
    EXPECT_EQ(formatOfName("x.gmp"), std::nullopt);
}

TEST(PictureFile, EveryFormatComesBack) {
    for (const auto& [name, bitmap] : test::assortment()) {
        SCOPED_TRACE(name);
        const TBitmap flat = flattenedOnWhite(bitmap).take();
        for (const PictureFormat format :
             {PictureFormat::Png, PictureFormat::Jpeg, PictureFormat::Gif, PictureFormat::Bmp}) {
            const Result<Bytes> file = encodePicture(bitmap, format);
            ASSERT_TRUE(file.ok()) << file.message();
            EXPECT_EQ(detectPicture(*file), format);
            const Result<TBitmap> again = readPicture(*file);
            ASSERT_TRUE(again.ok()) << again.message();
            EXPECT_EQ(again->size(), bitmap.size());
            if (format == PictureFormat::Png) {
                EXPECT_TRUE(samePixels(*again, bitmap));
            }
            if (format == PictureFormat::Bmp) {
                EXPECT_TRUE(samePixels(*again, flat));
            }
        }
    }
    EXPECT_THROW(static_cast<void>(encodePicture(test::noise(2, 2, PixelFormat::Bgr24, 1), PictureFormat::Pdf)),
                 AssertionFailure);
    EXPECT_FALSE(encodePicture(TBitmap(), PictureFormat::Bmp).ok());
    EXPECT_FALSE(readPicture({}).ok());
    EXPECT_FALSE(readPicture(Bytes{'%', 'P', 'D', 'F'}).ok());
}

TEST(PictureFile, TransparencyIsLaidOnWhite) {
    TBitmap bitmap = test::plain(3, 1, rgb(100, 0, 255));
    bitmap.row(0)[3] = 0;
    bitmap.row(0)[7] = 51;
    const TBitmap flat = flattenedOnWhite(bitmap).take();
    EXPECT_EQ(flat.pixel(0, 0), rgb(255, 255, 255));
    EXPECT_EQ(flat.pixel(1, 0), rgb(224, 204, 255));
    EXPECT_EQ(flat.pixel(2, 0), rgb(100, 0, 255));
}

#ifndef _WIN32

/// Lets the given programs read each file; `decode` writes a PPM file whose pixels must be the expected ones.
class ToolTest : public testing::Test {
protected:
    void check(const Bytes& file, const std::string& extension, const std::string& verify, const std::string& decode,
               const TBitmap& expected) {
        const std::filesystem::path path = folder_.path() / ("picture" + extension);
        const std::filesystem::path decoded = folder_.path() / "decoded.ppm";
        std::filesystem::remove(decoded);
        ASSERT_TRUE(writeFile(path, file).ok());
        const test::ToolResult verified = test::runTool(verify + " " + test::quoted(path));
        EXPECT_EQ(verified.code, 0) << verified.output;
        const test::ToolResult ran = test::runTool(decode + " " + test::quoted(path) + " > " + test::quoted(decoded));
        EXPECT_EQ(ran.code, 0) << ran.output;
        const Result<TBitmap> pixels = test::readPpm(decoded);
        ASSERT_TRUE(pixels.ok()) << pixels.message();
        EXPECT_TRUE(samePixels(*pixels, expected));
    }

    test::ScratchFolder folder_{"picture tools"};
};

TEST_F(ToolTest, OthersReadWhatWeWrite) {
    for (const auto& [name, bitmap] : test::fewOfAssortment()) {
        SCOPED_TRACE(name);
        const Bytes gif = encodePicture(bitmap, PictureFormat::Gif).take();
        const Bytes jpeg = encodePicture(bitmap, PictureFormat::Jpeg).take();
        const TBitmap flat = flattenedOnWhite(bitmap).take();
        check(gif, ".gif", "giftext", "bash -c 'convert \"$0\" -depth 8 ppm:-'", *readPicture(gif));
        check(jpeg, ".jpg", "identify -regard-warnings", "djpeg -strict", *readPicture(jpeg));
        check(encodePicture(bitmap, PictureFormat::Bmp).take(), ".bmp", "identify -regard-warnings",
              "bash -c 'convert \"$0\" -depth 8 ppm:-'", flat);
        check(encodePicture(bitmap, PictureFormat::Png).take(), ".png", "pngcheck -q",
              "bash -c 'convert \"$0\" -alpha off -depth 8 ppm:-'", bitmap.converted(PixelFormat::Bgr24).take());
    }
}

TEST_F(ToolTest, PrivateChunksAreWellFormed) {
    EncodeOptions options;
    options.extras = {{{"VERSION", "1.8"}, {"GNOTES", ""}}, {{"bBIn", {2}}, {"bBPn", Bytes(1000, 3)}, {"bBIn", {}}}};
    const Bytes file = *encodePicture(test::page(90, 60, PixelFormat::Bgr24, 9), PictureFormat::Png, options);
    // The checker takes the upper-case second letter of the types for "registered", which they are not, and stops:
    // it gets them with a small one.
    Bytes renamed(file.begin(), file.begin() + 8);
    for (size_t at = 8; at < file.size();) {
        const size_t length = static_cast<size_t>(file[at + 2]) << 8U | file[at + 3];
        std::string type(file.begin() + static_cast<std::ptrdiff_t>(at + 4),
                         file.begin() + static_cast<std::ptrdiff_t>(at + 8));
        if (type.starts_with("bB")) type[1] = 'b';
        const auto data = file.begin() + static_cast<std::ptrdiff_t>(at + 8);
        test::putChunk(renamed, type, Bytes(data, data + static_cast<std::ptrdiff_t>(length)));
        at += length + 12;
    }
    const std::filesystem::path path = folder_.path() / "chunks.png";
    ASSERT_TRUE(writeFile(path, renamed).ok());
    const test::ToolResult checked = test::runTool("pngcheck -vt " + test::quoted(path));
    EXPECT_EQ(checked.code, 0) << checked.output;
    EXPECT_NE(checked.output.find("chunk zTXt"), std::string::npos);
    EXPECT_EQ(checked.output.find("chunk tEXt"), std::string::npos);
    ASSERT_TRUE(writeFile(path, file).ok());
    EXPECT_EQ(test::runTool("identify -regard-warnings " + test::quoted(path)).code, 0);
}

#endif

}  // namespace
}  // namespace glimmer
