// The editing canvas on a long page with many annotations: what the user waits for.

#include <png.h>

#include <algorithm>
#include <chrono>
#include <csetjmp>
#include <cstring>
#include <random>

#include "common/files.h"
#include "editor/annotations/shapes_list.h"
#include "editor/canvas/canvas_view.h"
#include "editor/canvas/view_painter.h"
#include "editor/canvas/working_picture.h"
#include "editor/commands/change_annotation.h"
#include "editor/commands/draw_operation.h"
#include "editor/document/document.h"
#include "editor/painting/cairo_text_painter.h"
#include "harness.h"
#include "imaging/png_codec.h"

namespace glimmer::bench {

namespace {

constexpr Size window{1280, 900};
constexpr int32_t blurIntensity = 25;  // a radius of 2.5 pixels

/// A page with annotations of all styles and kinds, spread over it, on a canvas: everything but the last copy to the
/// screen.
class Canvas {
public:
    Canvas(TBitmap page, TShapesList shapes)
        : document_(CaptureDocument::create(std::move(page), {}, std::move(shapes)).take()),
          working_(*document_, text_),
          surface_(TBitmap::create(window.width, window.height, PixelFormat::Bgra32).take()) {
        view_.setPictureSize(document_->size());
        view_.setWindowSize(window);
        observer_ = document_->observe([this](const DocumentChange& change) {
            if (change.pixels || change.annotations) working_.invalidate(change.area);
            invalid_ = invalid_.united(view_.toView(change.area).inflated(1));
        });
        paint({0, 0, window.width, window.height});
    }

    CaptureDocument& document() { return *document_; }
    CanvasView& view() { return view_; }
    void paint(const Rect& area) {
        working_.refresh(view_.toPicture(area));
        paintView(surface_, area, view_, working_.bitmap(), overlay_, look_);
    }
    void paintInvalid() {
        paint(invalid_.intersected({0, 0, window.width, window.height}));
        invalid_ = {};
    }
    void select(const TBBShape& shape) {
        overlay_.handles.clear();
        for (int32_t i = 0; i < handleCount; ++i) overlay_.handles.push_back(handlePoint(shape.handleRect(), i));
    }
    /// The page is scrolled by `step` pixels: what comes into view is painted.
    void scroll(int32_t step, bool whole) {
        const Point at = view_.scroll();
        view_.scrollTo({at.x, at.y + step > view_.maxScroll().y ? 0 : at.y + step});
        paint(whole ? Rect{0, 0, window.width, window.height}
                    : Rect{0, window.height - step, window.width, window.height});
    }
    void forget() { working_.invalidateAll(); }

private:
    CairoTextPainter text_;
    std::unique_ptr<CaptureDocument> document_;
    CanvasView view_;
    WorkingPicture working_;
    TBitmap surface_;
    CanvasOverlay overlay_;
    CanvasLook look_;
    Rect invalid_;
    int observer_ = 0;
};

std::unique_ptr<UndoCommand> blurOf(const CaptureDocument& document, const Rect& area) {
    PixelSelection selection;
    selection.rectangle = {area.left, area.top, area.right - 1, area.bottom - 1};
    return std::make_unique<DrawOperation>(applyEffect(static_cast<int32_t>(PixelOperationKind::blur),
                                                       document.background(), nullptr, &selection, blurIntensity)
                                               .take());
}

/// The same file by libpng alone, as a program that only wants its pixels reads it.
TBitmap decodedByLibpng(const std::vector<uint8_t>& file) {
    struct Input {
        const uint8_t* at;
        size_t left;
    } input{file.data(), file.size()};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    TBitmap picture;
    if (setjmp(png_jmpbuf(png)) == 0) {
        png_set_read_fn(png, &input, [](png_structp reader, png_bytep data, size_t count) {
            auto* from = static_cast<Input*>(png_get_io_ptr(reader));
            if (count > from->left) png_error(reader, "end");
            std::memcpy(data, from->at, count);
            from->at += count;
            from->left -= count;
        });
        png_read_info(png, info);
        png_set_expand(png);
        png_set_bgr(png);
        png_set_filler(png, 255, PNG_FILLER_AFTER);
        png_read_update_info(png, info);
        picture = TBitmap::create(static_cast<int32_t>(png_get_image_width(png, info)),
                                  static_cast<int32_t>(png_get_image_height(png, info)), PixelFormat::Bgra32)
                      .take();
        for (int32_t y = 0; y < picture.height(); ++y) png_read_row(png, picture.row(y), nullptr);
        png_read_end(png, nullptr);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return picture;
}

void canvasTable(const TBitmap& page) {
    const TShapesList shapes = pageAnnotations();
    Canvas canvas(page.clone().take(), shapes);
    const AnnotationId moved = canvas.document().annotations()[5].id();
    Gesture drag = canvas.document().beginGesture();
    std::mt19937 random(1);
    const auto move = [&] {
        TBBShape shape = *canvas.document().annotations().find(moved);
        shape.moveBy(static_cast<int32_t>(random() % 7) - 3, static_cast<int32_t>(random() % 7) - 3);
        canvas.select(shape);
        static_cast<void>(canvas.document().run(std::make_unique<ChangeAnnotation>(std::move(shape)), drag));
        canvas.paintInvalid();
    };
    Canvas reduced(page.clone().take(), shapes);
    reduced.view().setZoom(67, {0, 0});
    Canvas blurred(page.clone().take(), shapes);
    const Rect area{200, 60, 1000, 660};
    const struct {
        const char* name;
        const char* limit;
        std::function<void()> work;
        std::function<void()> prepare;
    } cases[] = {
        {"repaint after a move", "8", move, {}},
        {"scroll step of 20 pixels", "8", [&] { canvas.scroll(20, false); }, {}},
        {"the same, whole window painted", "8", [&] { canvas.scroll(20, true); }, {}},
        {"the same at 67 %", "8", [&] { reduced.scroll(20, true); }, {}},
        {"scroll to another page", "", [&] { canvas.scroll(900, true); }, [&] { canvas.forget(); }},
        {"blur of 800 x 600, radius 2.5, to pixels", "40",
         [&] {
             static_cast<void>(blurred.document().run(blurOf(blurred.document(), area)));
             blurred.paintInvalid();
         },
         [&] {
             if (blurred.document().history().canUndo()) static_cast<void>(blurred.document().undo());
             blurred.paintInvalid();
         }},
    };
    std::vector<std::vector<std::string>> rows;
    for (const auto& c : cases)
        rows.push_back({c.name, milliseconds(compare({{c.name, c.work, c.prepare}}, 41)[0]), c.limit});
    printTable("Canvas of 1280 x 900 on 1280 x 10000 with 200 annotations", {"", "ms", "at most, ms"}, rows);
}

void openingTable(const TBitmap& page) {
    Result<std::vector<uint8_t>> read = readFile("samples/table-1280x10000.png", uint64_t{1} << 28U);
    const std::vector<uint8_t> file = read ? read.take() : encodePng(page).take();
    const TShapesList shapes = pageAnnotations();
    const std::vector<double> times =
        compare({{"libpng", [&] { decodedByLibpng(file); }},
                 {"product", [&] { const Canvas opened(std::move(readPng(file).take().bitmap), shapes); }},
                 {"product, decoding alone", [&] { readPng(file).take(); }}},
                9);
    printTable("Opening 1280 x 10000 up to the first paint, 200 annotations", {"", "ms", "of libpng", "at most"},
               {{"libpng, decoding alone", milliseconds(times[0]), "1.00", ""},
                {"product, decoding alone", milliseconds(times[2]), ratio(times[2] / times[0]), ""},
                {"product, opened and painted", milliseconds(times[1]), ratio(times[1] / times[0]), "1.30"}});
}

void undoTable(const TBitmap& page) {
    constexpr int steps = 1000;
    const auto document = CaptureDocument::create(page.clone().take(), {}).take();
    std::mt19937 random(3);
    for (int i = 0; i < steps; ++i) {
        const auto x = static_cast<int32_t>(random() % 880);
        const auto y = static_cast<int32_t>(random() % 9700);
        static_cast<void>(document->run(blurOf(*document, {x, y, x + 400, y + 300})));
    }
    const double megabytes =
        static_cast<double>(document->history().byteCount() + document->background().byteCount()) / 1e6;
    std::vector<double> times;
    while (document->history().canUndo()) {
        const auto start = std::chrono::steady_clock::now();
        static_cast<void>(document->undo());
        times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    printTable("A thousand blurs of 400 x 300 on 1280 x 10000", {"", "", "at most"},
               {{"picture and history, MB", milliseconds(megabytes), "150"},
                {"undo of one, median, ms", milliseconds(times[times.size() / 2]), "50"},
                {"undo of one, slowest of a hundred, ms", milliseconds(times[times.size() * 99 / 100]), "50"}});
}

}  // namespace

void editor() {
    const TBitmap page = pagePicture("table-1280x10000.png", {1280, 10000}, PixelFormat::Bgra32);
    canvasTable(page);
    openingTable(page);
    undoTable(page);
}

}  // namespace glimmer::bench
