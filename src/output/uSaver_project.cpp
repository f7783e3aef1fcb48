#include <algorithm>
#include <system_error>

#include "common/assertion.h"
#include "common/files.h"
#include "editor/document.h"
#include "output/editable_png.h"
#include "output/html_page.h"
#include "output/output_folders.h"
#include "output/output_picture.h"
#include "output/project_file.h"
#include "output/save_dialogs.h"
#include "output/uSaver.h"
#include "output/wait_window.h"
#include "settings/message_box.h"

// The saver's outputs that hold several captures: projects and pages.

namespace glimmer {

namespace {

namespace fs = std::filesystem;

/// The annotated areas of a capture: where the shapes are, or the labels of those that have none.
std::vector<PageArea> areasOf(const CaptureDocument& document) {
    std::vector<PageArea> areas;
    for (const TBBShape& annotation : document.annotations()) {
        const Rect around = annotation.shape.isVisible() ? annotation.shape.rectangle : annotation.text.rectangle;
        const Rect inside = around.intersected({0, 0, document.size().width, document.size().height});
        // A link needs a name; a label without text goes by its number.
        std::string text = annotation.text.text;
        if (text.empty()) text.append(1, '#').append(std::to_string(annotation.number.number));
        if (annotation.anyVisible() && !inside.empty()) areas.push_back({inside, text});
    }
    return areas;
}

}  // namespace

bool TSaver::saveProject(Documents documents, fs::path& path, bool ask) {
    for (const CaptureDocument* pEditForm : documents)
        GLIMMER_ASSERT(pEditForm != nullptr, "pEditForm!=NULL", "uSaver");
    if (documents.empty()) return false;
    fs::path target = path;
    if (ask || target.empty()) {
        const std::string name = target.empty() ? nextDefaultName(*documents.front()) : utf8FromPath(target.stem());
        const auto answer = saveDialogs().askProject(target.empty() ? lastSaveFolder() : target.parent_path(), name);
        if (!answer) return false;
        target = *answer;
    }
    {
        WaitWindow wait("Please wait: saving the project...");
        const std::vector<const CaptureDocument*> captures(documents.begin(), documents.end());
        const Status written = writeProject(
            target, captures, [&](const CaptureDocument& capture, size_t index) -> Result<std::vector<uint8_t>> {
                wait.setPart(index, captures.size());
                const Result<TBitmap> picture = outputPicture(capture, *text_);
                if (!picture) return picture.failure();
                // A project is there to be edited, whatever the option for pictures says.
                const EditableParts parts{capture.background(), capture.annotations(), capture.background().bounds(),
                                          capture.info().notes};
                return encodeEditablePng(*picture, parts, true, wait.asProgress());
            });
        if (wait.cancelled()) return false;
        if (!written) {
            showError(written.message());
            return false;
        }
    }
    path = target;
    rememberSaveFolder(target.parent_path());
    for (CaptureDocument* document : documents) document->markSaved();
    return true;
}

std::optional<fs::path> TSaver::exportPage(Documents documents) {
    if (documents.empty()) return std::nullopt;
    const auto target = saveDialogs().askPage(lastSaveFolder(), nextDefaultName(*documents.front()));
    if (!target) return std::nullopt;
    const std::string pageName = utf8FromPath(target->stem());
    std::string folderName = pageFolder(pageName);
    folderName.pop_back();
    const fs::path folder = target->parent_path() / pathFromUtf8(folderName);
    std::error_code error;
    const bool made = fs::create_directory(folder, error);

    WaitWindow wait("Please wait: creating pictures...");
    const auto cancelled = [&wait] { return wait.cancelled(); };
    Paths written;
    std::vector<PageCapture> captures;
    bool good = true;
    for (size_t i = 0; good && i < documents.size(); ++i) {
        wait.setPart(i, documents.size());
        const std::string picture = pagePictureName(pageName, static_cast<int>(i + 1)) + ".png";
        const CaptureDocument& document = *documents[i];
        good = writeTarget(
            folder / pathFromUtf8(picture), [&] { return encode(document, PictureFormat::Png, wait.asProgress()); },
            cancelled);
        if (good) written.push_back(folder / pathFromUtf8(picture));
        captures.push_back({document.info().name, folderName + "/" + picture, document.size(), areasOf(document),
                            document.info().notes});
    }
    const auto page = [&]() -> Result<std::vector<uint8_t>> {
        const std::string text = htmlPage(pageName, captures);
        return std::vector<uint8_t>(text.begin(), text.end());
    };
    good = good && writeTarget(*target, page, cancelled);
    if (!good) {
        for (const fs::path& path : written) fs::remove(path, error);
        if (made) fs::remove(folder, error);  // only when it is empty
        return std::nullopt;
    }
    rememberSaveFolder(target->parent_path());
    return *target;
}

}  // namespace glimmer
