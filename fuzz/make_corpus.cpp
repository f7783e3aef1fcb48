// Writes the fuzzers' seeds: small valid inputs that between them reach every branch of a reader. The folder of
// seeds is the argument.

#include <cstdio>
#include <filesystem>
#include <string>

#include "common/files.h"
#include "common/text.h"
#include "editor/annotation_record.h"
#include "imaging/picture_file.h"
#include "output/editable_png.h"
#include "support/pictures.h"
#include "support/png_maker.h"

namespace {

using namespace glimmer;
using test::Bytes;

class Corpus {
public:
    explicit Corpus(std::filesystem::path root) : root_(std::move(root)) {}
    void add(const std::string& fuzzer, const std::string& name, std::span<const uint8_t> data) {
        std::filesystem::create_directories(root_ / fuzzer);
        if (const Status written = writeFile(root_ / fuzzer / name, data); !written) {
            std::fprintf(stderr, "%s\n", written.message().c_str());
            failed_ = true;
        }
    }
    void add(const std::string& fuzzer, const std::string& name, const std::string& text) {
        add(fuzzer, name, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    }
    [[nodiscard]] bool failed() const { return failed_; }

private:
    std::filesystem::path root_;
    bool failed_ = false;
};

TShapeDescriptor annotation() {
    TShapeDescriptor one;
    one.id = 3;
    one.shapeRect = {2, 2, 12, 9};
    one.textRect = {14, 2, 30, 12};
    one.text = "Look \xD0\xB7";
    one.number = 7;
    return one;
}

void addPng(Corpus& corpus) {
    const auto sample = [](uint32_t x, uint32_t y, int c) { return (x + y + static_cast<uint32_t>(c)) & 1U; };
    const test::PngKind kinds[] = {{1, 0, false, {}, {}},
                                   {16, 0, true, {}, {0, 1}},
                                   {8, 2, false, {}, {0, 1, 0, 0, 0, 1}},
                                   {2, 3, true, {1, 2, 3, 4, 5, 6}, {0, 128}},
                                   {8, 4, false, {}, {}},
                                   {16, 6, true, {}, {}}};
    for (const test::PngKind& kind : kinds)
        corpus.add("png", "type" + std::to_string(kind.colourType) + "-" + std::to_string(kind.depth) + ".png",
                   test::makePng(9, 7, kind, sample));
    const TBitmap bitmap = test::page(32, 16, PixelFormat::Bgr24, 5);
    TShapesList shapes;
    shapes.add(TBBShape(annotation()));
    const std::string notes = "notes";
    corpus.add("png", "editable.png",
               encodeEditablePng(bitmap, {bitmap, shapes, bitmap.bounds(), notes}, true).take());
}

void addOthers(Corpus& corpus) {
    const TBitmap few = test::page(20, 12, PixelFormat::Bgr24, 5);
    const TBitmap many = test::noise(16, 16, PixelFormat::Bgr24, 1);
    for (const auto& [name, bitmap] : {std::pair<std::string, const TBitmap&>{"few", few}, {"many", many}}) {
        corpus.add("jpeg", name + ".jpg", encodePicture(bitmap, PictureFormat::Jpeg).take());
        corpus.add("gif", name + ".gif", encodePicture(bitmap, PictureFormat::Gif).take());
        corpus.add("bmp", name + ".bmp", encodePicture(bitmap, PictureFormat::Bmp).take());
    }
    const TShapeDescriptor one = annotation();
    corpus.add("record", "annotation", encodeAnnotation(&one));
    corpus.add("settings", "plain.ini",
               std::string("; settings\r\n[\\Software\\Form]\r\nLeft=12\r\nchkSound=1\r\nName=\"a b\"\r\n[empty]\r\n"));
    const std::string json = R"({"url":"http://a.b/","title":"caf\u00e9","action":101,"width":20,"height":10,"image":")" +
                             base64Encode(encodePng(few).take()) + "\"}";
    corpus.add("payload", "capture.json", json);
    corpus.add("payload", "packed", test::deflated(Bytes(json.begin(), json.end())));
    corpus.add("payload", "nested.json", std::string(R"({"a":[[[{"b":[1,-2.5e9,true,null]}]]]})"));
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: make_corpus FOLDER\n");
        return 2;
    }
    Corpus corpus(arguments[1]);
    addPng(corpus);
    addOthers(corpus);
    return corpus.failed() ? 1 : 0;
}
