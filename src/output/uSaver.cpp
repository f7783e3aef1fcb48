#include "output/uSaver.h"

#include "common/clock.h"
#include "common/files.h"
#include "editor/document.h"
#include "imaging/png_codec.h"
#include "output/file_name_template.h"
#include "output/output_folders.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

std::optional<std::filesystem::path> TSaver::savePicture(CaptureDocument& document, SaveMode mode) {
    (void)mode;
    Options& options = OptionsHolder();
    FileNameTemplate names{options.text("edtFilenameTemplate"), options.number("spnNextNum"),
                           options.on("chkPadNumber"), options.number("spnNumberPadding")};
    const std::string name = defaultFileName(names, document.info().url, document.info().title, systemClock());
    const std::filesystem::path path = freePath(lastSaveFolder(), name, ".png");
    const Result<std::vector<uint8_t>> png = encodePng(document.background());
    Status written = png ? writeFile(path, *png) : Status(png.failure());
    if (!written) {
        showError("Cannot create file: " + utf8FromPath(path) + " for writing");
        return std::nullopt;
    }
    options.setNumber("spnNextNum", names.nextNumber);
    saveOptions();
    document.markSaved();
    return path;
}

}  // namespace glimmer
