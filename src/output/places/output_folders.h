#pragma once

#include <filesystem>

#include "settings/program_folders.h"

namespace glimmer {

/// The user's pictures folder; where that is not there today the documents, then the user's own folder. Empty when the
/// system names none of them.
std::filesystem::path picturesFolder();

/// Notes that the program wrote a file into the working folder, so that it is cleaned up one day. A file elsewhere is
/// not noted.
void rememberWorkingFile(const std::filesystem::path& file);
/// Deletes old files of the program from the working folder if the options say so. For the start of the program.
void cleanUpWorkingFolder();

/// Deletes what the program put into the mail folder more than a week ago. For the next e-mail.
void cleanUpMailFolder();

/// Where the user saved last; picturesFolder() at first and when that folder is gone.
std::filesystem::path lastSaveFolder();
void rememberSaveFolder(const std::filesystem::path& folder);

}  // namespace glimmer
