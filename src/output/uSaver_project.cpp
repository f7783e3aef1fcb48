#include <system_error>
#include <utility>
#include <vector>

#include "common/assertion.h"
#include "common/files.h"
#include "editor/document/document.h"
#include "output/files/html_page.h"
#include "output/files/project_file.h"
#include "output/picture/output_picture.h"
#include "output/places/file_name_template.h"
#include "output/places/output_folders.h"
#include "output/uSaver.h"
#include "output/ways/save_dialogs.h"
#include "output/ways/wait_window.h"
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

/// A folder that is made now, and removed with everything in it unless it is kept.
class NewFolder {
public:
    explicit NewFolder(fs::path path) : path_(std::move(path)) {
        std::error_code error;
        made_ = fs::create_directory(path_, error);
    }
    ~NewFolder() {
        std::error_code ignored;
        if (made_) fs::remove_all(path_, ignored);
    }
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;
    NewFolder(NewFolder&&) = delete;
    NewFolder& operator=(NewFolder&&) = delete;

    [[nodiscard]] const fs::path& path() const { return path_; }
    void keep() { made_ = false; }
    /// Moves its files into a folder that exists already, over those of the same names. Does nothing when it is that
    /// folder itself.
    Status become(const fs::path& other) {
        if (path_ == other) return {};
        std::error_code error;
        std::vector<fs::path> files;
        for (fs::directory_iterator file(path_, error), end; !error && file != end; file.increment(error))
            files.push_back(file->path());
        for (const fs::path& file : files) {
            const fs::path place = other / file.filename();
            if (!moveOver(file, place)) return Failure{"Cannot create file: " + utf8FromPath(place) + " for writing"};
        }
        return {};
    }

private:
    fs::path path_;
    bool made_ = false;
};

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
                const BackToRest rest(*documents[index]);
                // A project is there to be edited, whatever the option for pictures says.
                return encodeEditable(capture, true, wait.asProgress());
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

// The pictures are written into a folder that did not exist before. Only when all of them and the page are complete do
// they take the places of what an earlier page of that name left there.
std::optional<fs::path> TSaver::exportPage(Documents documents) {
    if (documents.empty()) return std::nullopt;
    const auto target = saveDialogs().askPage(lastSaveFolder(), nextDefaultName(*documents.front()));
    if (!target) return std::nullopt;
    const std::string pageName = utf8FromPath(target->stem());
    std::string folderName = pageFolder(pageName);
    folderName.pop_back();
    const fs::path folder = target->parent_path() / pathFromUtf8(folderName);
    NewFolder made(freePath(target->parent_path(), folderName, ""));

    WaitWindow wait("Please wait: creating pictures...");
    const auto cancelled = [&wait] { return wait.cancelled(); };
    std::vector<PageCapture> captures;
    for (size_t i = 0; i < documents.size(); ++i) {
        wait.setPart(i, documents.size());
        const std::string picture = pagePictureName(pageName, static_cast<int>(i + 1)) + ".png";
        const CaptureDocument& document = *documents[i];
        const BackToRest rest(*documents[i]);
        if (!writeTarget(
                made.path() / pathFromUtf8(picture),
                [&] { return encode(document, PictureFormat::Png, wait.asProgress()); }, cancelled))
            return std::nullopt;
        captures.push_back({document.info().name, std::string(folderName).append("/").append(picture), document.size(),
                            areasOf(document), document.info().notes});
    }
    // The page is on the disk, all but its name, before the first older picture goes.
    const std::string text = htmlPage(pageName, captures);
    TemporaryOutput page(*target, {.inherits = true});
    const bool complete = page.write({reinterpret_cast<const uint8_t*>(text.data()), text.size()}) && page.complete();
    if (const Status moved = complete ? made.become(folder) : Status(); !moved) {
        showError(moved.message());
        return std::nullopt;
    }
    if (!complete || !page.commit()) {
        showError("Cannot create file: " + utf8FromPath(*target) + " for writing" + explained(*target, page.trouble()));
        return std::nullopt;
    }
    if (made.path() == folder) made.keep();
    for (const fs::path& written : {folder, target->parent_path()}) removeAbandonedOutputs(written);
    rememberSaveFolder(target->parent_path());
    return *target;
}

}  // namespace glimmer
