#include "output/places/output_folders.h"

#include <chrono>
#include <system_error>

#include "common/files.h"
#include "common/system_folders.h"
#include "output/places/working_folder.h"
#include "settings/options.h"
#include "settings/program_folders.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view lastFolderKey = "LastSaveFolder";
constexpr std::chrono::hours oneDay{24};
/// How long a mail program may take to fetch what it was handed.
constexpr std::chrono::hours mailAge = 7 * oneDay;

}  // namespace

fs::path picturesFolder() {
    // The folder may lie on a drive or in a cloud that is not there today.
    for (const SystemFolder place : {SystemFolder::Pictures, SystemFolder::Documents, SystemFolder::Profile})
        if (fs::path folder = systemFolder(place); !folder.empty()) return folder;
    return {};
}

void rememberWorkingFile(const fs::path& file) {
    // A file that is not remembered is not cleaned up either; nobody is troubled with that.
    (void)WorkingFolder(workingFolder()).remember(file);
}

void cleanUpWorkingFolder() {
    const Options& options = OptionsHolder();
    if (!options.on("chkFolderCleanup") || workingFolder().empty()) return;
    WorkingFolder(workingFolder())
        .cleanUp(options.number("spnFolderCleanupMax") * oneDay, fs::file_time_type::clock::now());
}

void cleanUpMailFolder() {
    WorkingFolder(workingFolder()).cleanUp(mailAge, fs::file_time_type::clock::now(), mailSubFolder);
}

fs::path lastSaveFolder() {
    const fs::path folder = pathFromUtf8(settings().readString(settingsSection(group::general), lastFolderKey));
    std::error_code error;
    return !folder.empty() && fs::is_directory(folder, error) ? folder : picturesFolder();
}

void rememberSaveFolder(const fs::path& folder) {
    settings().writeString(settingsSection(group::general), lastFolderKey, utf8FromPath(folder));
}

}  // namespace glimmer
