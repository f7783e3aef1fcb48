#pragma once

#include <filesystem>
#include <string>

namespace glimmer {

// The files of a kept capture: a manifest, and deflated bands of pixels that it names by their numbers.

constexpr const char* recoveryManifestName = "capture.manifest";
constexpr const char* recoveryBandExtension = ".band";
/// As many take a few milliseconds.
constexpr int recoveryFilesRemovedAtOnce = 8;

inline std::filesystem::path recoveryBandFile(const std::filesystem::path& folder, uint64_t file) {
    return folder / (std::to_string(file) + recoveryBandExtension);
}

}  // namespace glimmer
