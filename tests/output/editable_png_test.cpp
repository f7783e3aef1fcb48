#include "output/files/editable_png.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <random>

#include "common/assertion.h"
#include "common/bytes.h"
#include "common/text.h"
#include "editor/annotations/annotation_record.h"
#include "editor/annotations/shapes_list.h"
#include "imaging/png_chunks.h"
#include "output/files/uPNGChunk.h"
#include "support/assertions.h"
#include "support/pictures.h"
#include "support/scratch_folder.h"
#include "support/tools.h"

namespace glimmer {
namespace {

using Bytes = std::vector<uint8_t>;

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    /// 0 to n - 1.
    int32_t upTo(int32_t n) { return static_cast<int32_t>(engine_() % static_cast<uint32_t>(n)); }
    bool coin() { return upTo(2) == 1; }
    Colour colour() { return engine_() & 0xFFFFFFU; }
    int32_t coordinate() { return upTo(4) > 0 ? upTo(3000) - 500 : upTo(2 * maxCoordinate + 1) - maxCoordinate; }
    Rect rect() { return Rect{coordinate(), coordinate(), coordinate(), coordinate()}.normalized(); }
    /// Any UTF-16 at all: unpaired surrogates, zeros and all scripts.
    std::string text(int32_t longest) {
        std::u16string units;
        for (int32_t left = upTo(longest + 1); left > 0; --left) {
            const int32_t kind = upTo(4);
            units += static_cast<char16_t>(kind == 0   ? upTo(0x10000)
                                           : kind == 1 ? 0xD800 + upTo(0x800)
                                           : kind == 2 ? 0x400 + upTo(0x100)
                                                       : 0x20 + upTo(0x5F));
        }
        return toUtf8(units);
    }
    TBitmap picture(int32_t width, int32_t height) {
        TBitmap bitmap = TBitmap::create(width, height, PixelFormat::Bgra32).take();
        for (uint8_t& byte : bitmap.bytes()) byte = static_cast<uint8_t>(engine_());
        return bitmap;
    }
    TShapeDescriptor annotation() {
        TShapeDescriptor a;
        a.style.name = text(12);
        a.style.shape = {static_cast<ShapeKind>(1 + upTo(5)), colour(), colour(), upTo(101), 1 + upTo(11), coin()};
        a.style.text = {text(8),  1 + upTo(400), coin(),   coin(), coin(),   static_cast<TextAlignment>(upTo(3)),
                        colour(), colour(),      colour(), coin(), upTo(13), coin()};
        a.style.line = {
            colour(), colour(), 1 + upTo(11), static_cast<LineEnd>(1 + upTo(3)), static_cast<LineEnd>(1 + upTo(3)),
            coin()};
        a.style.number = {static_cast<NumberPosition>(1 + upTo(4)), coin()};
        a.shapeRect = rect();
        a.textRect = rect();
        a.text = text(60);
        a.number = upTo(maxStepNumber + 1);
        if (a.style.shape.kind == ShapeKind::Drawing)
            a.drawing = std::make_shared<const TBitmap>(picture(1 + upTo(9), 1 + upTo(9)));
        return a;
    }
    TShapesList list(int32_t most) {
        TShapesList shapes;
        for (int32_t left = upTo(most + 1); left > 0; --left) shapes.add(TBBShape(annotation()));
        if (shapes.size() > 2) {
            shapes.remove(shapes[0].id());  // ids need not be 1, 2, 3 ...
            shapes.moveTo(shapes[shapes.size() - 1].id(), 0);
        }
        return shapes;
    }

private:
    std::mt19937 engine_;
};

Bytes written(const TBitmap& flat, const TBitmap& background, const TShapesList& shapes, const Rect& area,
              const std::string& notes, bool embed = true) {
    Result<Bytes> file = encodeEditablePng(flat, {background, shapes, area, notes}, embed);
    EXPECT_TRUE(file.ok()) << file.message();
    return file.take();
}

TEST(EditablePng, EveryFieldSurvivesForAThousandLists) {
    for (unsigned seed = 0; seed < 1000; ++seed) {
        Random random(seed);
        const int32_t width = 1 + random.upTo(20);
        const int32_t height = 1 + random.upTo(20);
        const TBitmap background = random.picture(width, height);
        const TBitmap flat = random.picture(width, height);
        const TShapesList shapes = random.list(6);
        const Rect area = {random.upTo(width), random.upTo(height), width, height};
        std::string notes = random.text(30);
        notes.erase(std::remove(notes.begin(), notes.end(), '\0'), notes.end());  // ends a text chunk
        Result<OpenedPicture> opened = readEditablePng(written(flat, background, shapes, area, notes));
        ASSERT_TRUE(opened.ok()) << opened.message();
        ASSERT_TRUE(opened->editable) << seed;
        ASSERT_TRUE(samePixels(opened->picture.background, background)) << seed;
        ASSERT_EQ(opened->picture.shapes, shapes) << seed;
        ASSERT_EQ(opened->picture.area, area) << seed;
        ASSERT_EQ(opened->picture.notes, notes) << seed;
    }
}

/// The names of a PNG file's chunks in order.
std::vector<std::string> chunkNames(const Bytes& file) {
    std::vector<std::string> names;
    for (size_t at = pngSignature.size(); at + 12 <= file.size();) {
        const auto place = parseChunkHeader(std::span<const uint8_t, 8>(file.data() + at, 8), at);
        if (!place) break;
        // Whether the pixels need a palette is the codec's choice.
        const bool palette = place->name() == "PLTE" || place->name() == "tRNS";
        if (!palette && (names.empty() || names.back() != "IDAT" || place->name() != "IDAT"))
            names.emplace_back(place->name());
        at = place->end();
    }
    return names;
}

TEST(EditablePng, ChunksStandInTheirOrder) {
    Random random(3);
    TShapesList shapes;
    TShapeDescriptor plain = random.annotation();
    plain.style.shape.kind = ShapeKind::Rectangle;
    plain.drawing = nullptr;
    TShapeDescriptor drawn = plain;
    drawn.style.shape.kind = ShapeKind::Drawing;
    drawn.drawing = std::make_shared<const TBitmap>(random.picture(5, 4));
    for (const TShapeDescriptor& a : {plain, drawn, plain, drawn}) shapes.add(TBBShape(a));
    const TBitmap background = random.picture(8, 8);
    const Bytes file = written(background, background, shapes, background.bounds(), "notes");
    EXPECT_EQ(chunkNames(file), (std::vector<std::string>{"IHDR", "zTXt", "zTXt", "zTXt", "IDAT", "bBIn", "bBIn",
                                                          "bBIn", "bBIn", "bBIn", "bBPn", "bBPn", "bBPn", "IEND"}));
    const PngPicture png = readPng(file).take();
    EXPECT_EQ(png.extras.texts,
              (std::vector<PngText>{{"VERSION", "1.8"}, {"CREATOR", "GLIMMERPAD"}, {"GNOTES", "notes"}}));
    EXPECT_EQ(png.extras.chunks[0].data, (Bytes{2, 0, 0, 0, 0, 0, 0, 0, 0, 8, 0, 0, 0, 8, 0, 0, 0}));
    EXPECT_EQ(png.extras.chunks[1].data[0], 1);
    EXPECT_TRUE(samePixels(readPng(png.extras.chunks[6].data)->bitmap, *drawn.drawing));

    const Bytes bare = written(background, background, shapes, background.bounds(), "notes", false);
    EXPECT_EQ(chunkNames(bare), (std::vector<std::string>{"IHDR", "IDAT", "IEND"}));
    EXPECT_FALSE(readEditablePng(bare)->editable);
}

/// A record put together by hand: 24 settings with a value each, in the given order and widths.
Bytes recordByHand(uint32_t version, const std::vector<Bytes>& strings) {
    ByteWriter out;
    out.u32(version);
    out.u32(static_cast<uint32_t>(strings.size()));
    for (const Bytes& string : strings) {
        out.u32(static_cast<uint32_t>(string.size()));
        out.bytes(string);
    }
    const auto style = [&out](const uint8_t(&b)[3], const uint32_t(&d)[5]) {
        for (const uint8_t v : b) out.u8(v);
        for (const uint32_t v : d) out.u32(v);
    };
    out.u8(1);
    out.u8(0);
    style({4, 46, 3}, {static_cast<uint32_t>(-5), 20, 300, 400, 0x112233});
    out.u8(1);
    style({2, 7, 1}, {1, 2, 3, 4, 0});
    out.u8(1);
    out.u8(0);
    out.u8(1);
    out.u8(0);
    out.u32(0x445566);
    out.u8(0);
    out.u8(0);
    out.u32(12);
    out.u32(0x778899);
    style({3, 2, 11}, {0xAABBCC, 0xDDEEFF, 0, 0, 0});
    out.u32(0x010203);
    out.u8(0);
    out.u8(0);
    out.u32(0x040506);
    style({0, 0, 0}, {0, 0, 0, 0, 0});
    out.u8(0);
    out.u8(0);
    out.u32(77);
    out.u32(0);
    for (int i = 0; i < 4; ++i) out.u32(0);
    out.u32(1);   // entries
    out.u32(4);   // key: position
    out.u32(1);   // flag and three bytes
    out.u32(99);  // value: step number
    out.u32(1);   // members
    out.u32(77);
    return out.take();
}

TShapeDescriptor annotationByHand() {
    TShapeDescriptor a;
    a.id = 77;
    a.text = "\xC3\xA9\xE2\x82\xAC";  // e acute, euro sign
    a.style.name = "S";
    a.style.shape = {ShapeKind::Ellipse, 0x112233, 0x445566, 46, 3, true};
    a.style.text = {"Arial", 12, true, false, true, TextAlignment::Right, 0x778899, 0x010203, 0x040506, true, 7, false};
    a.style.line = {0xAABBCC, 0xDDEEFF, 11, LineEnd::Bullet, LineEnd::Arrow, true};
    a.style.number = {NumberPosition::InsideBottomRight, true};
    a.shapeRect = {-5, 20, 300, 400};
    a.textRect = {1, 2, 3, 4};
    a.number = 99;
    return a;
}

const std::vector<Bytes> wideStrings = {{0xE9, 0, 0xAC, 0x20}, {'A', 0, 'r', 0, 'i', 0, 'a', 0, 'l', 0}, {'S', 0}};

TEST(AnnotationRecord, LiesInTheGivenSlots) {
    const TShapeDescriptor a = annotationByHand();
    EXPECT_EQ(encodeAnnotation(&a), recordByHand(3, wideStrings));
    EXPECT_EQ(decodeAnnotation(recordByHand(3, wideStrings))->descriptor, a);
    const Bytes old = recordByHand(2, {{0xE9, 0x80}, {'A', 'r', 'i', 'a', 'l'}, {'S'}});
    ASSERT_TRUE(decodeAnnotation(old).has_value());
    EXPECT_EQ(decodeAnnotation(old)->descriptor, a);
}

TEST(AnnotationRecord, IsDescribedInTheDocumentation) {
    std::ifstream file("docs/file-formats.md");
    const std::string page((std::istreambuf_iterator<char>(file)), {});
    const std::vector<std::string> outline = recordOutline();
    EXPECT_EQ(outline.size(), 24U);
    std::string widths;
    for (const std::string& row : outline) {
        // "3 S shape: kind, opacity" stands as "| 3 | S | shape: kind, opacity |".
        const size_t first = row.find(' ');
        const std::string wanted =
            "| " + row.substr(0, first) + " | " + row.substr(first + 1, 1) + " | " + row.substr(first + 3) + " |";
        EXPECT_NE(page.find(wanted), std::string::npos) << wanted;
        widths += row[first + 1];
    }
    EXPECT_EQ(widths, "BBSBSBBBBDBBDDSDBBDSBBDD");
}

TEST(Chunks, AssertWhatMustBeThere) {
    test::expectAssertion("pAnnotationStruct!=NULL", "uPNGChunk", [] { TChunkbBIn::fromAnnotation(nullptr); });
    test::expectAssertion("pBitmap!=NULL", "uPNGChunk", [] { (void)TChunkbBPn::fromBitmap(nullptr); });
    test::expectAssertion("pMS!=NULL", "uPNGChunk", [] { (void)TChunkbBIn().save(); });
    test::expectAssertion("pMS!=NULL", "uPNGChunk", [] { (void)TChunkbBPn().save(); });
    TChunkbBPn empty;
    empty.load({});
    test::expectAssertion("pMS->Size>0", "uPNGChunk", [&] { (void)empty.bitmap(); });
    for (const size_t count : {size_t{0}, size_t{2}, size_t{4}})
        test::expectAssertion("pSL->Count == 3", "uPNGChunk",
                              [&] { decodeAnnotation(recordByHand(3, std::vector<Bytes>(count))); });
}

TEST(EditablePng, WhatIsWrittenComesBackAndWhatWouldNotIsRefused) {
    Random random(5);
    const TBitmap picture = random.picture(20, 20);
    TShapesList shapes;
    TShapeDescriptor drawn = annotationByHand();
    drawn.style.shape.kind = ShapeKind::Drawing;
    for (const int32_t side : {10, 6}) {
        drawn.drawing = std::make_shared<const TBitmap>(random.picture(side, side));
        for (int copies = 0; copies < 2; ++copies) shapes.add(TBBShape(drawn));
    }
    const EditableParts parts{picture, shapes, picture.bounds(), "notes"};
    const Bytes file = encodeEditablePng(picture, parts, true).take();
    EditableLimits exact{10 * 10 + 6 * 6, {file.size(), 0, 0}};  // copies share their picture
    const PngPicture png = readPng(file).take();
    for (const PngChunk& chunk : png.extras.chunks) {
        ++exact.png.privateChunks;
        exact.png.privateBytes += chunk.data.size();
    }
    EXPECT_EQ(*encodeEditablePng(picture, parts, true, {}, exact), file);
    const OpenedPicture opened = readEditablePng(file, exact).take();
    ASSERT_TRUE(opened.editable);
    EXPECT_EQ(opened.picture.shapes[0].describe().drawing, opened.picture.shapes[1].describe().drawing);
    EXPECT_TRUE(std::equal(shapes.begin(), shapes.end(), opened.picture.shapes.begin(), opened.picture.shapes.end()));

    std::vector<EditableLimits> less(4, exact);
    --less[0].drawingPixels;
    --less[1].png.privateChunks;
    --less[2].png.privateBytes;
    --less[3].png.fileBytes;
    for (const EditableLimits& limits : less) {
        const Result<Bytes> refused = encodeEditablePng(picture, parts, true, {}, limits);
        ASSERT_FALSE(refused.ok());
        EXPECT_NE(refused.message().find(" too "), std::string::npos) << refused.message();
        const Result<OpenedPicture> read = readEditablePng(file, limits);
        EXPECT_FALSE(read && read->editable) << refused.message();
    }

    std::string notes(PngLimits::textBytes, 'n');
    EXPECT_EQ(readEditablePng(written(picture, picture, shapes, picture.bounds(), notes))->picture.notes, notes);
    notes += 'n';
    EXPECT_FALSE(encodeEditablePng(picture, {picture, shapes, picture.bounds(), notes}, true).ok());
}

/// A file with good extras that `change` has made worse.
class Damaged : public testing::Test {
protected:
    void SetUp() override {
        Random random(8);
        background = random.picture(12, 10);
        TShapeDescriptor drawn = annotationByHand();
        drawn.style.shape.kind = ShapeKind::Drawing;
        drawn.drawing = std::make_shared<const TBitmap>(random.picture(3, 3));
        shapes.add(TBBShape(annotationByHand()));
        shapes.add(TBBShape(drawn));
        good = readPng(written(background, background, shapes, background.bounds(), "kept"))->extras;
        ASSERT_EQ(good.chunks.size(), 5U);
    }
    OpenedPicture open(const std::function<void(std::vector<PngChunk>&)>& change) {
        PngExtras extras = good;
        change(extras.chunks);
        Bytes file;
        const ByteSink append = [&file](std::span<const uint8_t> data) {
            file.insert(file.end(), data.begin(), data.end());
            return Status();
        };
        const PngBounds beyond{PngLimits::fileBytes, PngLimits::chunks, PngLimits::fileBytes};  // another's writer
        EXPECT_TRUE(writePng(background, extras, append, {}, beyond));
        Result<OpenedPicture> opened = readEditablePng(file);
        EXPECT_TRUE(opened.ok()) << opened.message();
        return opened.take();
    }
    void expectFlat(const char* what, const std::function<void(std::vector<PngChunk>&)>& change) {
        const OpenedPicture opened = open(change);
        EXPECT_FALSE(opened.editable) << what;
        EXPECT_TRUE(opened.picture.shapes.empty()) << what;
        EXPECT_TRUE(samePixels(opened.picture.background, background)) << what;
        EXPECT_EQ(opened.picture.notes, "kept");
    }
    static void put32(Bytes& data, size_t at, uint32_t value) {
        for (size_t i = 0; i < 4; ++i) data.at(at + i) = static_cast<uint8_t>(value >> (8 * i));
    }

    TBitmap background;
    TShapesList shapes;
    PngExtras good;
};

using Chunks = std::vector<PngChunk>;

TEST_F(Damaged, OpensFlat) {
    EXPECT_TRUE(open([](Chunks&) {}).editable);
    expectFlat("no chunks", [](Chunks& c) { c.clear(); });
    expectFlat("no background", [](Chunks& c) { c.erase(c.begin() + 3, c.end()); });
    expectFlat("no annotation chunks", [](Chunks& c) { c.erase(c.begin(), c.begin() + 3); });
    expectFlat("rectangle twice", [](Chunks& c) { c.push_back(c[0]); });
    expectFlat("rectangle short", [](Chunks& c) { c[0].data.pop_back(); });
    expectFlat("rectangle long", [](Chunks& c) { c[0].data.push_back(0); });
    expectFlat("no kind", [](Chunks& c) { c[1].data.clear(); });
    expectFlat("unknown kind", [](Chunks& c) { c[1].data[0] = 3; });
    for (const uint32_t version : {0U, 1U, 4U, 0xFFFFFFFFU})
        expectFlat("version", [&](Chunks& c) { put32(c[1].data, 1, version); });
    for (const uint32_t count : {0U, 2U, 4U, 0xFFFFFFFFU})
        expectFlat("string count", [&](Chunks& c) { put32(c[1].data, 5, count); });
    for (const uint32_t length : {3U, 0x7FFFFFFEU, 0xFFFFFFFEU})
        expectFlat("string length", [&](Chunks& c) { put32(c[1].data, 9, length); });
    expectFlat("one byte more", [](Chunks& c) { c[2].data.push_back(0); });
    for (size_t cut = 1; cut < good.chunks[1].data.size(); cut += 7)
        expectFlat("cut short", [&](Chunks& c) { c[1].data.resize(c[1].data.size() - cut); });
    const size_t entries = good.chunks[1].data.size() - 24;
    for (const uint32_t count : {2U, 0xFFFFFFFFU})
        expectFlat("entry count", [&](Chunks& c) { put32(c[1].data, entries, count); });
    for (const uint32_t count : {0U, 2U, 0x40000001U, 0xFFFFFFFFU})
        expectFlat("member count", [&](Chunks& c) { put32(c[1].data, entries + 16, count); });
    expectFlat("empty background", [](Chunks& c) { c[3].data.clear(); });
    expectFlat("background cut", [](Chunks& c) { c[3].data.resize(c[3].data.size() / 2); });
    expectFlat("background of another size", [](Chunks& c) { std::swap(c[3], c[4]); });
    expectFlat("picture of an annotation missing", [](Chunks& c) { c.pop_back(); });
    expectFlat("a picture too many", [](Chunks& c) { c.push_back(c[4]); });
    expectFlat("picture is none", [](Chunks& c) { c[4].data.assign(100, 7); });
    expectFlat("picture claims to be huge", [](Chunks& c) {
        c[4].data[16] = c[4].data[20] = 0;
        c[4].data[17] = c[4].data[21] = 1;
    });
}

TEST_F(Damaged, WildValuesComeIntoRange) {
    // All fixed settings 0xFF: the file opens, and every value can be worked with.
    const size_t strings = 1 + 8 + 4 + 4 + 4 + 10 + 4 + 2;
    const OpenedPicture opened = open(
        [&](Chunks& c) { std::fill_n(c[1].data.begin() + static_cast<std::ptrdiff_t>(strings), 30, uint8_t{0xFF}); });
    ASSERT_TRUE(opened.editable);
    const TShapeDescriptor read = opened.picture.shapes[0].describe();
    TShapeDescriptor clamped = read;
    clampDescriptor(clamped);
    EXPECT_EQ(read, clamped);
}

TEST_F(Damaged, TenThousandRepeatsCostLittle) {
    for (const size_t repeated : {size_t{0}, size_t{1}, size_t{3}, size_t{4}}) {
        const auto start = std::chrono::steady_clock::now();
        expectFlat("repeated", [&](Chunks& c) {
            const PngChunk one = c[repeated];
            c.insert(c.end(), 10000, one);
        });
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    }
    // As many annotations as the bounds allow do open.
    EXPECT_TRUE(open([](Chunks& c) {
                    const PngChunk one = c[1];
                    c.insert(c.begin() + 1, 4000, one);
                }).editable);
}

TEST_F(Damaged, RandomBytesNeverBreakTheReader) {
    Random random(21);
    for (int round = 0; round < 3000; ++round) {
        Bytes record = encodeAnnotation(&*std::make_unique<TShapeDescriptor>(random.annotation()));
        for (int32_t hits = 1 + random.upTo(6); hits > 0; --hits)
            record[static_cast<size_t>(random.upTo(static_cast<int32_t>(record.size())))] =
                static_cast<uint8_t>(random.upTo(256));
        if (random.coin()) record.resize(static_cast<size_t>(random.upTo(static_cast<int32_t>(record.size()))));
        try {
            if (const auto decoded = decodeAnnotation(record)) {
                TShapeDescriptor clamped = decoded->descriptor;
                clamped.style.shape.kind = ShapeKind::Ellipse;
                TShapeDescriptor again = clamped;
                clampDescriptor(again);
                EXPECT_EQ(again, clamped);
            }
        } catch (const AssertionFailure& failure) {
            EXPECT_STREQ(failure.condition, "pSL->Count == 3");
        }
    }
}

#ifndef _WIN32

/// One program that copies chunks it does not know, as their names allow, and one that drops them.
TEST(EditablePng, OpensAfterAnotherProgramSavedIt) {
    const test::ScratchFolder folder("resaved");
    Random random(12);
    const TBitmap background = test::page(80, 60, PixelFormat::Bgra32, 300);
    const TBitmap flat = test::page(80, 60, PixelFormat::Bgra32, 300, 2);
    TShapesList shapes;
    for (int i = 0; i < 3; ++i) shapes.add(TBBShape(random.annotation()));
    const Rect area{5, 6, 70, 50};
    const std::filesystem::path path = folder.path() / "saved.png";
    const std::filesystem::path again = folder.path() / "again.png";
    ASSERT_TRUE(writeFile(path, written(flat, background, shapes, area, "kept")).ok());

    test::ToolResult ran = test::runTool("optipng -force -o1 -out " + test::quoted(again) + " " + test::quoted(path));
    ASSERT_EQ(ran.code, 0) << ran.output;
    Bytes file = readFile(again, PngLimits::fileBytes).take();
    EXPECT_TRUE(samePixels(readPng(file)->bitmap, flat));
    OpenedPicture opened = readEditablePng(file).take();
    ASSERT_TRUE(opened.editable);
    EXPECT_TRUE(samePixels(opened.picture.background, background));
    EXPECT_EQ(opened.picture.shapes, shapes);
    EXPECT_EQ(opened.picture.area, area);
    EXPECT_EQ(opened.picture.notes, "kept");

    ran = test::runTool("convert " + test::quoted(path) + " " + test::quoted(again));
    ASSERT_EQ(ran.code, 0) << ran.output;
    file = readFile(again, PngLimits::fileBytes).take();
    opened = readEditablePng(file).take();
    EXPECT_FALSE(opened.editable);
    EXPECT_TRUE(opened.picture.shapes.empty());
    EXPECT_TRUE(samePixels(opened.picture.background, flat));
}

#endif

TEST(EditablePng, ProgressRisesAndCanStop) {
    Random random(4);
    const TBitmap background = random.picture(200, 150);
    TShapesList shapes = random.list(8);
    double last = 0;
    const std::string notes;
    const EditableParts parts = {background, shapes, background.bounds(), notes};
    ASSERT_TRUE(encodeEditablePng(background, parts, true, [&](double done) {
                    EXPECT_GE(done, last);
                    last = done;
                    return true;
                }).ok());
    EXPECT_GT(last, 0.9);
    EXPECT_LE(last, 1.0);
    EXPECT_FALSE(encodeEditablePng(background, parts, true, [](double) { return false; }).ok());
}

}  // namespace
}  // namespace glimmer
