#pragma once

#include <filesystem>

#include "common/result.h"

// The folders that the program keeps files of its own in.

namespace glimmer {

/// Where files for other programs are put: the folder that the options name, else one of the program's own in the
/// user's application data. It need not exist. Empty when the system names none.
std::filesystem::path workingFolder();

/// Folders in it, and the one beside the user's pictures for copies that an external editor opens; made when they are
/// missing. The failure is the text for the user.
Result<std::filesystem::path> mailFolder();
Result<std::filesystem::path> publishFolder();
Result<std::filesystem::path> externalEditorFolder();
/// The name of the mail folder in the working folder.
constexpr const char* mailSubFolder = "mail";

/// Where open captures with unsaved changes are kept against a crash: one place for the standalone program and all
/// hosts. Need not exist. On this machine only: a profile that follows the user is no place for gigabytes.
std::filesystem::path recoveryFolder();
/// Where earlier versions kept them.
std::filesystem::path formerRecoveryFolder();

}  // namespace glimmer
