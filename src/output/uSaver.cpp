#include "output/uSaver.h"

#include <system_error>

#include "common/assertion.h"
#include "common/clock.h"
#include "common/debug_channel.h"
#include "common/files.h"
#include "editor/document/document.h"
#include "output/files/encode_capture.h"
#include "output/files/whole_file.h"
#include "output/picture/join_pictures.h"
#include "output/picture/output_picture.h"
#include "output/places/file_name_template.h"
#include "output/places/output_folders.h"
#include "output/ways/uJPEGSettings.h"
#include "settings/options.h"
// Brings windows.h, whose names must not meet the toolkit's headers.
#include "editor/labels/rich_text_painter.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

/// Without a folder the file would go to whatever folder is the current one.
Failure noFolder() {
    return Failure{"The system names no folder for pictures. Please save the picture under a name of your own."};
}

void checkDocuments(TSaver::Documents documents) {
    for (const CaptureDocument* pEditor : documents) GLIMMER_ASSERT(pEditor != nullptr, "pEditor!=NULL", "uSaver");
}

Result<fs::path> saved(Result<fs::path> written, CaptureDocument& document) {
    if (!written) return written;
    removeAbandonedOutputs(written->parent_path());
    document.markSaved();
    debugDetail("saved " + utf8FromPath(*written));
    return written;
}

}  // namespace

TSaver::TSaver() : text_(std::make_unique<RichTextPainter>()) {}
TSaver::~TSaver() = default;

std::string nextDefaultName(const CaptureDocument& document) {
    Options& options = OptionsHolder();
    FileNameTemplate names{options.text("edtFilenameTemplate"), options.number("spnNextNum"),
                           options.on("chkPadNumber"), options.number("spnNumberPadding")};
    const int32_t before = names.nextNumber;
    std::string name = defaultFileName(names, document.info().url, document.info().title, systemClock());
    if (names.nextNumber != before) {
        options.setNumber("spnNextNum", names.nextNumber);
        saveOptions();
    }
    return name;
}

Result<std::vector<uint8_t>> TSaver::encode(const CaptureDocument& document, PictureFormat format,
                                            const Progress& progress, Editable editable) {
    const bool embed = editable != Editable::No && OptionsHolder().on("chkEmbedNativeInfo");
    return encodeCapture(document, {format, embed, jpegQuality()}, *text_, progress);
}

Result<TBitmap> TSaver::picture(Documents documents, const Progress& progress) {
    checkDocuments(documents);
    std::vector<TBitmap> pictures;
    pictures.reserve(documents.size());
    for (CaptureDocument* document : documents) {
        const double done = static_cast<double>(pictures.size()) / static_cast<double>(documents.size());
        if (progress && !progress(done)) return cancelled();
        const BackToRest rest(*document);
        Result<TBitmap> one = outputPicture(*document, *text_);
        if (!one || documents.size() == 1) return one;
        pictures.push_back(one.take());
    }
    std::vector<const TBitmap*> parts;
    parts.reserve(pictures.size());
    for (const TBitmap& one : pictures) parts.push_back(&one);
    return joinPictures(parts);
}

Result<fs::path> TSaver::save(CaptureDocument& document, const fs::path& path, PictureFormat format,
                              const Progress& progress) {
    if (path.parent_path().empty()) return noFolder();
    const BackToRest rest(document);
    const auto bytes = [&] { return encode(document, format, progress); };
    return saved(writeWholeFile(path, bytes, progress), document);
}

Result<fs::path> TSaver::saveAs(CaptureDocument& document, const fs::path& folder, const std::string& name,
                                PictureFormat format, const Progress& progress) {
    if (folder.empty()) return noFolder();
    const BackToRest rest(document);
    const auto bytes = [&] { return encode(document, format, progress); };
    const auto freeName = [&] { return freePath(folder, name, extensionOf(format)); };
    return saved(writeWholeFile(freeName(), bytes, progress, freeName), document);
}

Result<TSaver::Paths> TSaver::saveInto(const fs::path& folder, Documents documents, PictureFormat format,
                                       Editable editable, const Progress& progress) {
    checkDocuments(documents);
    if (folder.empty()) return noFolder();
    Paths written;
    for (size_t i = 0; i < documents.size(); ++i) {
        const Progress part = partOf(progress, i, documents.size());
        const BackToRest rest(*documents[i]);
        const std::string name = nextDefaultName(*documents[i]);
        const auto freeName = [&] { return freePath(folder, name, extensionOf(format)); };
        const auto bytes = [&] { return encode(*documents[i], format, part, editable); };
        const Result<fs::path> file = writeWholeFile(freeName(), bytes, part, freeName);
        if (!file) {
            std::error_code ignored;
            for (const fs::path& path : written) fs::remove(path, ignored);
            return file.failure();
        }
        written.push_back(*file);
    }
    removeAbandonedOutputs(folder);
    return written;
}

Result<TSaver::Paths> TSaver::saveForWork(const fs::path& folder, Documents documents, PictureFormat format,
                                          Editable editable, const Progress& progress) {
    Result<Paths> files = saveInto(folder, documents, format, editable, progress);
    if (files)
        for (const fs::path& path : *files) rememberWorkingFile(path);
    return files;
}

}  // namespace glimmer
