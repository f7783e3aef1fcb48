#include <system_error>
#include <utility>
#include <vector>

#include "common/files.h"
#include "editor/document/document.h"
#include "output/files/encode_capture.h"
#include "output/files/html_page.h"
#include "output/files/project_file.h"
#include "output/files/whole_file.h"
#include "output/picture/output_picture.h"
#include "output/places/file_name_template.h"
#include "output/uSaver.h"

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

Status TSaver::saveProject(Documents documents, const fs::path& path, const Progress& progress) {
    const std::vector<const CaptureDocument*> captures(documents.begin(), documents.end());
    return writeProject(path, captures, [&](const CaptureDocument& capture, size_t index) {
        const BackToRest rest(*documents[index]);
        return encodeCapture(capture, CaptureFormat{}, *text_, partOf(progress, index, captures.size()));
    });
}

// The pictures are written into a folder that did not exist before. Only when all of them and the page are complete do
// they take the places of what an earlier page of that name left there.
Status TSaver::savePage(Documents documents, const fs::path& path, const Progress& progress) {
    const std::string pageName = utf8FromPath(path.stem());
    std::string folderName = pageFolder(pageName);
    folderName.pop_back();
    const fs::path folder = path.parent_path() / pathFromUtf8(folderName);
    NewFolder made(freePath(path.parent_path(), folderName, ""));

    std::vector<PageCapture> captures;
    for (size_t i = 0; i < documents.size(); ++i) {
        const Progress part = partOf(progress, i, documents.size());
        const std::string picture = pagePictureName(pageName, static_cast<int>(i + 1)) + ".png";
        const CaptureDocument& document = *documents[i];
        const BackToRest rest(*documents[i]);
        const auto bytes = [&] { return encode(document, PictureFormat::Png, part); };
        const Result<fs::path> written = writeWholeFile(made.path() / pathFromUtf8(picture), bytes, part);
        if (!written) return written.failure();
        captures.push_back({document.info().name, std::string(folderName).append("/").append(picture), document.size(),
                            areasOf(document), document.info().notes});
    }
    // The page is on the disk, all but its name, before the first older picture goes.
    const std::string text = htmlPage(pageName, captures);
    TemporaryOutput page(path, {.inherits = true});
    const bool complete = page.write({reinterpret_cast<const uint8_t*>(text.data()), text.size()}) && page.complete();
    if (Status moved = complete ? made.become(folder) : Status(); !moved) return moved;
    if (!complete || !page.commit())
        return Failure{"Cannot create file: " + utf8FromPath(path) + " for writing" + explained(path, page.trouble())};
    if (made.path() == folder) made.keep();
    for (const fs::path& written : {folder, path.parent_path()}) removeAbandonedOutputs(written);
    return {};
}

}  // namespace glimmer
