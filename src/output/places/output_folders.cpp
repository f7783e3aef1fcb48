#include "output/places/output_folders.h"

#include <chrono>
#include <system_error>

#include "common/files.h"
#include "common/host_kind.h"
#include "common/system_folders.h"
#include "output/places/working_folder.h"
#include "settings/options.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view lastFolderKey = "LastSaveFolder";
constexpr const char* mailSubFolder = "mail";
constexpr std::chrono::hours oneDay{24};
/// How long a mail program may take to fetch what it was handed.
constexpr std::chrono::hours mailAge = 7 * oneDay;

/// The folder, made when missing and tried for access. `number` tells in the message which of them it was.
Result<fs::path> usableFolder(const fs::path& parent, const fs::path& folder, int number) {
    const fs::path path = parent / folder;
    std::error_code error;
    // Where the system names no parent it would be made in the current folder.
    if (!parent.empty()) fs::create_directories(path, error);
    if (!parent.empty() && fs::is_directory(path, error)) {
        const fs::directory_iterator entered(path, error);
        if (!error) return path;
    }
    std::string message = "[";
    message += std::to_string(number);
    message += "] Failed to get access to folder \"";
    message += utf8FromPath(path);
    message += '"';
    return Failure{message};
}

fs::path recoveryFolderIn(SystemFolder place) {
    const fs::path data = systemFolder(place);
    return data.empty() ? data : data / "Glimmerpad" / "recovery";
}

/// The standalone program keeps its files under its own name.
fs::path productFolder() { return isStandalone() ? "Glimmerpad" : "Vistrane"; }

}  // namespace

fs::path picturesFolder() {
    // The folder may lie on a drive or in a cloud that is not there today.
    for (const SystemFolder place : {SystemFolder::Pictures, SystemFolder::Documents, SystemFolder::Profile})
        if (fs::path folder = systemFolder(place); !folder.empty()) return folder;
    return {};
}

fs::path workingFolder() {
    fs::path chosen = pathFromUtf8(OptionsHolder().text("edtWorkingFolderPath"));
    if (!chosen.empty()) return chosen;
    const fs::path data = systemFolder(SystemFolder::RoamingData);
    return data.empty() ? data : data / productFolder();
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

Result<fs::path> mailFolder() { return usableFolder(workingFolder(), mailSubFolder, 1); }

void cleanUpMailFolder() {
    WorkingFolder(workingFolder()).cleanUp(mailAge, fs::file_time_type::clock::now(), mailSubFolder);
}

Result<fs::path> publishFolder() { return usableFolder(workingFolder(), "publish", 2); }
Result<fs::path> externalEditorFolder() { return usableFolder(systemFolder(SystemFolder::Pictures), "Vistrane", 4); }

fs::path recoveryFolder() { return recoveryFolderIn(SystemFolder::LocalData); }
fs::path formerRecoveryFolder() { return recoveryFolderIn(SystemFolder::RoamingData); }

fs::path lastSaveFolder() {
    const fs::path folder = pathFromUtf8(settings().readString(settingsSection(group::general), lastFolderKey));
    std::error_code error;
    return !folder.empty() && fs::is_directory(folder, error) ? folder : picturesFolder();
}

void rememberSaveFolder(const fs::path& folder) {
    settings().writeString(settingsSection(group::general), lastFolderKey, utf8FromPath(folder));
}

}  // namespace glimmer
