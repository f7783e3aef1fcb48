#include "output/open_captures.h"

#include "common/files.h"
#include "common/text.h"
#include "imaging/picture_file.h"
#include "output/editable_png.h"
#include "output/project_file.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

using Document = std::unique_ptr<CaptureDocument>;

Result<Document> documentOf(EditablePicture picture, CaptureInfo info) {
    info.notes = std::move(picture.notes);
    return CaptureDocument::create(std::move(picture.background), std::move(info), std::move(picture.shapes));
}

Result<Document> decodeProjectPicture(std::span<const uint8_t> png, CaptureInfo info) {
    Result<OpenedPicture> opened = readEditablePng(png);
    if (!opened) return opened.failure();
    return documentOf(std::move(opened->picture), std::move(info));
}

Result<Document> openPicture(const std::filesystem::path& path) {
    const Result<std::vector<uint8_t>> file = readFile(path, PngLimits::fileBytes);
    if (!file) return file.failure();
    CaptureInfo info;
    info.title = utf8FromPath(path.stem());
    info.name = info.title;
    if (detectPicture(*file) == PictureFormat::Png) {
        Result<OpenedPicture> opened = readEditablePng(*file);
        if (!opened) return opened.failure();
        if (!opened->editable) showError(missingDataText);
        return documentOf(std::move(opened->picture), std::move(info));
    }
    Result<TBitmap> picture = readPicture(*file);
    if (!picture) return picture.failure();
    return CaptureDocument::create(picture.take(), std::move(info));
}

}  // namespace

Result<std::vector<Document>> openCaptures(const std::filesystem::path& path) {
    if (upperAscii(utf8FromPath(path.extension())) == ".GMP") return readProject(path, decodeProjectPicture);
    Result<Document> document = openPicture(path);
    if (!document) return document.failure();
    (*document)->markSaved();
    std::vector<Document> one;
    one.push_back(document.take());
    return one;
}

}  // namespace glimmer
