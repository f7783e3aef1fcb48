#pragma once

#include <filesystem>

namespace glimmer {

enum class SystemFolder {
    RoamingData,  ///< application data that follows the user from machine to machine: settings
    LocalData,    ///< application data of this machine: what is large or of no use elsewhere
    Pictures,
    Documents,
    Profile,  ///< the user's own folder, which holds the others
};

/// A folder of the user's, as the shell names it now: never keep it, it may be moved (to another drive, into a cloud)
/// while the program runs. Made when it is missing; empty when the system names none or it cannot be made.
///
/// The environment variable GLIMMERPAD_FOLDERS replaces all of them by folders below the one that it names, so that
/// tests leave a person's own files alone in every process that they start.
std::filesystem::path systemFolder(SystemFolder folder);

}  // namespace glimmer
