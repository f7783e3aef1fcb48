#pragma once

#include <memory>
#include <string>

namespace glimmer {

/// Brings new versions of the program. There is one, behind updater().
class Updater {
public:
    virtual ~Updater() = default;
    /// Whether a new version is there; says so unless `silent`.
    virtual bool isUpdateAvailable(bool silent) = 0;
    /// Whether the download was started.
    virtual bool download() = 0;
    struct Outcome {
        bool installed = false;
        std::string message;  ///< for the user
    };
    /// Installs what was downloaded into a folder.
    virtual Outcome install(const std::string& folder) = 0;
};

Updater& updater();

}  // namespace glimmer
