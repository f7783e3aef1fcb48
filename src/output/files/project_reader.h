#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "editor/document/document.h"
#include "output/files/file_limits.h"

namespace glimmer {

// What a project's archive holds, made captures again. The archive itself is read elsewhere (project_file.h).

constexpr std::string_view projectVersion = "1";
constexpr const char* projectVersionEntry = "Version";
constexpr const char* projectNamesEntry = "Editor Names.dat";
constexpr const char* projectPagesEntry = "Editor Pages.dat";
/// "0001.png" for the first capture, whose index is 0.
std::string projectPictureEntry(size_t index);

/// The entries of an archive by name; each is unpacked when it is read, none is kept.
class ProjectEntries {
public:
    ProjectEntries() = default;
    virtual ~ProjectEntries() = default;
    ProjectEntries(const ProjectEntries&) = delete;
    ProjectEntries& operator=(const ProjectEntries&) = delete;
    ProjectEntries(ProjectEntries&&) = delete;
    ProjectEntries& operator=(ProjectEntries&&) = delete;

    /// Bytes of an entry as the archive's list says; nothing when it is not there.
    [[nodiscard]] virtual std::optional<uint64_t> size(const std::string& name) const = 0;
    /// The entry, unpacked; nothing when it is not there, damaged, not as long as the list says, or beyond `limit`.
    virtual std::optional<std::vector<uint8_t>> read(const std::string& name, uint64_t limit) = 0;
};

/// A capture from its editable PNG file, its name and page from `info`.
using CaptureDecoder =
    std::function<Result<std::unique_ptr<CaptureDocument>>(std::span<const uint8_t> png, CaptureInfo info)>;

/// All captures of the project called `name` in messages, saved and parked, or none and the reason. Holds one unpacked
/// entry at a time.
Result<std::vector<std::unique_ptr<CaptureDocument>>> readProjectEntries(ProjectEntries& entries,
                                                                         const std::string& name,
                                                                         const CaptureDecoder& decode,
                                                                         const ProjectLimits& limits = {});

/// The sentence for a file that is no project of ours.
std::string damagedProject(const std::string& name);

/// What decodes a project's captures: a picture that lacks its parts opens flat and sets `lacksData`.
Result<std::unique_ptr<CaptureDocument>> editableCapture(std::span<const uint8_t> png, CaptureInfo info,
                                                         bool& lacksData);

}  // namespace glimmer
