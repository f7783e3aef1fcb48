#include "settings/program_folders.h"

#include <string>
#include <system_error>

#include "common/files.h"
#include "common/host_kind.h"
#include "common/system_folders.h"
#include "settings/options.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

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

fs::path workingFolder() {
    fs::path chosen = pathFromUtf8(OptionsHolder().text("edtWorkingFolderPath"));
    if (!chosen.empty()) return chosen;
    const fs::path data = systemFolder(SystemFolder::RoamingData);
    return data.empty() ? data : data / productFolder();
}

Result<fs::path> mailFolder() { return usableFolder(workingFolder(), mailSubFolder, 1); }
Result<fs::path> publishFolder() { return usableFolder(workingFolder(), "publish", 2); }
Result<fs::path> externalEditorFolder() { return usableFolder(systemFolder(SystemFolder::Pictures), "Vistrane", 4); }

fs::path recoveryFolder() { return recoveryFolderIn(SystemFolder::LocalData); }
fs::path formerRecoveryFolder() { return recoveryFolderIn(SystemFolder::RoamingData); }

}  // namespace glimmer
