#pragma once

#include <filesystem>
#include <string>

#include "common/result.h"

namespace glimmer {

/// The user's pictures folder; the current folder when the system names none.
std::filesystem::path picturesFolder();

/// Folders of the program's own, made when they are missing. The failure is the text for the user.
Result<std::filesystem::path> mailFolder();
Result<std::filesystem::path> publishFolder();
Result<std::filesystem::path> externalEditorFolder();

/// Where the user saved last; the pictures folder at first and when that folder is gone.
std::filesystem::path lastSaveFolder();
void rememberSaveFolder(const std::filesystem::path& folder);

}  // namespace glimmer
