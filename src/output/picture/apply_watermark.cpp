#include "common/files.h"
#include "imaging/picture_file.h"
#include "output/picture/watermark.h"
#include "output/places/file_name_template.h"

namespace glimmer {

namespace {

constexpr uint64_t largestMarkFile = 64U << 20U;

}  // namespace

Status applyWatermark(TBitmap& picture, const Options& options, const std::string& address, const std::string& title,
                      Clock& clock, TextPainter& painter, const PictureRows& rows) {
    if (!options.on("chkWMDisplay")) return {};
    const WatermarkSettings settings = watermarkSettings(options);
    if (!settings.fromBitmap) {
        const FileNameTemplate words{settings.text, options.number("spnNextNum"), options.on("chkPadNumber"),
                                     options.number("spnNumberPadding")};
        drawTextWatermark(picture, settings, withPlaceholdersReplaced(words, address, title, clock), painter, rows);
        return {};
    }
    const Result<std::vector<uint8_t>> file = readFile(pathFromUtf8(settings.bitmapFile), largestMarkFile);
    if (!file) return Failure{"The watermark is missing. " + file.message()};
    const Result<TBitmap> mark = readPicture(*file);
    if (!mark) return Failure{"The watermark cannot be read. " + mark.message()};
    return drawBitmapWatermark(picture, settings, *mark, rows);
}

}  // namespace glimmer
