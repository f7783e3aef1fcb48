#include "output/print/print_job.h"

#include <algorithm>
#include <cmath>

#include "imaging/graphutils.h"
#include "imaging/scaling.h"
#include "output/picture/output_picture.h"
#include "output/print/foot_line.h"

namespace glimmer {

namespace {

constexpr const char* nothingToPrint = "The range of pages has no page in it.";

/// One sheet of the job.
struct Sheet {
    const PrintDocument* document;
    PrintSheet what;
    int32_t number;  ///< among those of its document, from 1
    int32_t count;
};

std::vector<Sheet> allSheets(std::span<const PrintDocument> documents) {
    std::vector<Sheet> all;
    for (const PrintDocument& document : documents) {
        const std::vector<PrintSheet> sheets = document.sheets();
        int32_t number = 0;
        for (const PrintSheet& sheet : sheets)
            all.push_back({&document, sheet, ++number, static_cast<int32_t>(sheets.size())});
    }
    return all;
}

/// In the order of printing.
std::vector<Sheet> chosenSheets(std::span<const PrintDocument> documents, const PrintRange& range) {
    const std::vector<Sheet> all = allSheets(documents);
    const auto first = static_cast<size_t>(std::max(range.first, 1) - 1);
    const size_t last = std::min(all.size(), static_cast<size_t>(std::max(range.last, 0)));
    std::vector<Sheet> chosen;
    for (int32_t copy = 0; copy < (range.collate ? range.copies : 1); ++copy)
        for (size_t i = first; i < last; ++i)
            for (int32_t again = 0; again < (range.collate ? 1 : range.copies); ++again) chosen.push_back(all[i]);
    return chosen;
}

/// Paper is white where the picture is transparent.
void putOnWhite(TBitmap& band) {
    if (!band.hasTransparency()) return;
    for (int32_t y = 0; y < band.height(); ++y) {
        uint8_t* p = band.row(y);
        for (int32_t x = 0; x < band.width(); ++x, p += 4) {
            for (size_t c = 0; c < 3; ++c) p[c] = static_cast<uint8_t>((p[c] * p[3] + 255 * (255 - p[3]) + 127) / 255);
            p[3] = 255;
        }
    }
}

class SheetPrinter {
public:
    SheetPrinter(PrintTarget& target, const Sheet& sheet, TextPainter& text)
        : target_(target), sheet_(sheet), text_(text), dots_(dotsOf(target.paper(), sheet.what.place)) {}

    /// `progress` is of this sheet.
    Status print(const Progress& progress) const {
        const BackToRest rest(sheet_.document->source->document());
        if (Status started = target_.startPage(); !started) return started;
        const int32_t step = sheet_.document->source->bandRows();
        const Rect& part = sheet_.what.source;
        for (int32_t y = part.top; y < part.bottom; y += step) {
            if (progress && !progress(static_cast<double>(y - part.top) / part.height())) return Failure{};
            if (Status drawn = band(y, std::min(y + step, part.bottom)); !drawn) return drawn;
        }
        if (sheet_.document->layout.wishes().footLine)
            if (Status drawn = foot(); !drawn) return drawn;
        return target_.endPage();
    }

private:
    /// Edges of bands fall on whole dots, and one band's last is the next one's first.
    [[nodiscard]] int32_t dotOf(int32_t row) const {
        const Rect& part = sheet_.what.source;
        return dots_.top +
               static_cast<int32_t>(std::lround(static_cast<double>(row - part.top) * dots_.height() / part.height()));
    }
    [[nodiscard]] Status band(int32_t from, int32_t to) const {
        const Rect place{dots_.left, dotOf(from), dots_.right, dotOf(to)};
        if (place.empty()) return {};
        Result<TBitmap> rows = sheet_.document->source->rows(from, to);
        if (!rows) return rows.failure();
        putOnWhite(*rows);
        if (sheet_.document->grayscale) grayscale(*rows);
        const Size fewer{std::min(rows->width(), place.width()), std::min(rows->height(), place.height())};
        if (fewer != rows->size()) {
            rows = resized(*rows, fewer.width, fewer.height);
            if (!rows) return rows.failure();
        }
        return target_.draw(*rows, place);
    }
    [[nodiscard]] Status foot() const {
        const Rect place = dotsOf(target_.paper(), sheet_.document->layout.footPlace());
        const PrintSource& source = *sheet_.document->source;
        const Result<TBitmap> line = footLine(source.info(), footDate(source.time(), sheet_.number, sheet_.count),
                                              {place.width(), place.height()}, text_);
        return line ? target_.draw(*line, place) : Status(line.failure());
    }

    PrintTarget& target_;
    const Sheet& sheet_;
    TextPainter& text_;
    Rect dots_;
};

}  // namespace

PrintOutcome printDocuments(PrintTarget& target, const std::string& jobName, std::span<const PrintDocument> documents,
                            const PrintRange& range, TextPainter& text, const Progress& progress) {
    const std::vector<Sheet> sheets = chosenSheets(documents, range);
    if (sheets.empty()) return {PrintEnd::Failed, nothingToPrint};
    Status status = target.startDocument(jobName);
    for (size_t i = 0; status && i < sheets.size(); ++i)
        status = SheetPrinter(target, sheets[i], text).print([&](double done) {
            return !progress || progress((static_cast<double>(i) + done) / static_cast<double>(sheets.size()));
        });
    if (status) {
        status = target.endDocument();
        if (status) return {};
    } else {
        target.abort();
    }
    return {status.message().empty() ? PrintEnd::Cancelled : PrintEnd::Failed, status.message()};
}

}  // namespace glimmer
