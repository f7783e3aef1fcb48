#include "output/files/project_reader.h"

#include <array>
#include <cstdio>
#include <utility>

#include "output/files/editable_png.h"
#include "output/files/project_lists.h"

namespace glimmer {

namespace {

std::optional<std::string> readText(ProjectEntries& entries, const std::string& name, uint64_t limit) {
    const std::optional<std::vector<uint8_t>> data = entries.read(name, limit);
    return data ? std::optional<std::string>(std::in_place, data->begin(), data->end()) : std::nullopt;
}

/// What the lists tell of the captures; nothing when they are damaged, tell of none or of too many.
std::optional<std::vector<CaptureInfo>> readInfos(ProjectEntries& entries, const ProjectLimits& limits) {
    const std::optional<std::string> names = readText(entries, projectNamesEntry, limits.listBytes);
    const std::optional<std::string> pages =
        entries.size(projectPagesEntry) ? readText(entries, projectPagesEntry, limits.listBytes) : std::string();
    if (!names || !pages) return std::nullopt;
    std::optional<std::vector<CaptureInfo>> infos = projectInfos(*names, *pages);
    if (!infos || infos->empty() || infos->size() > limits.captures) return std::nullopt;
    return infos;
}

}  // namespace

std::string projectPictureEntry(size_t index) {
    std::array<char, 24> name{};
    std::snprintf(name.data(), name.size(), "%04u.png", static_cast<unsigned>(index + 1));
    return name.data();
}

std::string damagedProject(const std::string& name) {
    return "The file " + name + " is damaged or is not a Glimmerpad project.";
}

Result<std::vector<std::unique_ptr<CaptureDocument>>> readProjectEntries(ProjectEntries& entries,
                                                                         const std::string& name,
                                                                         const CaptureDecoder& decode,
                                                                         const ProjectLimits& limits) {
    const Failure damaged{damagedProject(name)};
    const std::string version = readText(entries, projectVersionEntry, limits.listBytes).value_or("");
    if (version.empty()) return damaged;
    if (version != projectVersion)
        return Failure{"The project " + name + " was made by a newer version of the program."};
    std::optional<std::vector<CaptureInfo>> infos = readInfos(entries, limits);
    if (!infos) return damaged;

    std::vector<std::unique_ptr<CaptureDocument>> captures;
    for (size_t i = 0; i < infos->size(); ++i) {
        const std::string entry = projectPictureEntry(i);
        if (entries.size(entry).value_or(0) > limits.pictureBytes)
            return Failure{"The project " + name + " holds a picture that is too large."};
        std::optional<std::vector<uint8_t>> picture = entries.read(entry, limits.pictureBytes);
        if (!picture) return damaged;
        Result<std::unique_ptr<CaptureDocument>> capture = decode(*picture, std::move((*infos)[i]));
        if (!capture) return capture.failure();
        (*capture)->markSaved();
        (*capture)->park();
        captures.push_back(capture.take());
    }
    return captures;
}

Result<std::unique_ptr<CaptureDocument>> editableCapture(std::span<const uint8_t> png, CaptureInfo info,
                                                         bool& lacksData) {
    Result<OpenedPicture> opened = readEditablePng(png);
    if (!opened) return opened.failure();
    lacksData = lacksData || !opened->editable;
    info.notes = std::move(opened->picture.notes);
    return CaptureDocument::create(std::move(opened->picture.background), std::move(info),
                                   std::move(opened->picture.shapes));
}

}  // namespace glimmer
