#include "output/files/open_captures.h"

#include <exception>
#include <utility>

#include "common/files.h"
#include "common/text.h"
#include "imaging/picture_file.h"
#include "output/files/project_file.h"

namespace glimmer {

namespace {

using Document = std::unique_ptr<CaptureDocument>;

Result<Document> openPicture(const std::filesystem::path& path, bool& lacksData) {
    const Result<std::vector<uint8_t>> file = readFile(path, PngLimits::fileBytes);
    if (!file) return file.failure();
    CaptureInfo info;
    info.title = utf8FromPath(path.stem());
    info.name = info.title;
    if (detectPicture(*file) == PictureFormat::Png) {
        return editableCapture(*file, std::move(info), lacksData);
    }
    Result<TBitmap> picture = readPicture(*file);
    if (!picture) return picture.failure();
    return CaptureDocument::create(picture.take(), std::move(info));
}

OpeningAhead::Opened read(const std::filesystem::path& path) {
    bool lacksData = false;
    if (upperAscii(utf8FromPath(path.extension())) == ".GMP") {
        const CaptureDecoder decode = [&lacksData](std::span<const uint8_t> png, CaptureInfo info) {
            return editableCapture(png, std::move(info), lacksData);
        };
        OpeningAhead::Opened opened{readProject(path, decode)};
        opened.lacksData = lacksData;
        return opened;
    }
    Result<Document> document = openPicture(path, lacksData);
    if (!document) return {document.failure()};
    (*document)->markSaved();
    std::vector<Document> one;
    one.push_back(document.take());
    return {std::move(one), lacksData};
}

OpeningAhead* ahead = nullptr;

}  // namespace

Result<std::vector<Document>> openCaptures(const std::filesystem::path& path, bool* lacksData) {
    std::optional<OpeningAhead::Opened> opened = OpeningAhead::take(path);
    if (!opened) opened = read(path);
    if (lacksData != nullptr && opened->captures) *lacksData = opened->lacksData;
    return std::move(opened->captures);
}

OpeningAhead::OpeningAhead(std::filesystem::path path) : path_(std::move(path)) {
    try {
        opened_ = std::async(std::launch::async, [file = path_] { return read(file); });
        ahead = this;
    } catch (const std::exception&) {  // the file is read when it is asked for
    }
}

OpeningAhead::~OpeningAhead() {
    if (ahead == this) ahead = nullptr;
}

std::optional<OpeningAhead::Opened> OpeningAhead::take(const std::filesystem::path& path) {
    if (ahead == nullptr || ahead->path_ != path || !ahead->opened_.valid()) return std::nullopt;
    return ahead->opened_.get();
}

}  // namespace glimmer
