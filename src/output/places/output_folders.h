#pragma once

#include <filesystem>
#include <string>

#include "common/result.h"

namespace glimmer {

/// The user's pictures folder; where that is not there today the documents, then the user's own folder. Empty when the
/// system names none of them.
std::filesystem::path picturesFolder();

/// Where files for other programs are put: the folder that the options name, else one of the program's own in the
/// user's application data. It need not exist. Empty when the system names none.
std::filesystem::path workingFolder();
/// Notes that the program wrote a file there, so that it is cleaned up one day. A file elsewhere is not noted.
void rememberWorkingFile(const std::filesystem::path& file);
/// Deletes old files of the program from the working folder if the options say so. For the start of the program.
void cleanUpWorkingFolder();

/// Folders of the program's own, made when they are missing. The failure is the text for the user.
Result<std::filesystem::path> mailFolder();
/// Deletes what the program put into the mail folder more than a week ago. For the next e-mail.
void cleanUpMailFolder();
Result<std::filesystem::path> publishFolder();
Result<std::filesystem::path> externalEditorFolder();

/// Where open captures with unsaved changes are kept against a crash: one place for the standalone program and all
/// hosts. Need not exist. On this machine only: a profile that follows the user is no place for gigabytes.
std::filesystem::path recoveryFolder();
/// Where earlier versions kept them.
std::filesystem::path formerRecoveryFolder();

/// Where the user saved last; picturesFolder() at first and when that folder is gone.
std::filesystem::path lastSaveFolder();
void rememberSaveFolder(const std::filesystem::path& folder);

}  // namespace glimmer
