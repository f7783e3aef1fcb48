#pragma once

#include <memory>
#include <string_view>

#include "common/result.h"
#include "settings/options.h"

namespace glimmer {

/// Makes the program the system's viewer for kinds of files, and gives that back.
class FileAssociations {
public:
    virtual ~FileAssociations() = default;
    /// `extension` with its dot.
    virtual Status associate(std::string_view extension, bool on) = 0;
};

/// Says that the program cannot do that yet.
std::unique_ptr<FileAssociations> plainFileAssociations();

/// Carries out what changed between two states of the options. Stops at the first failure.
Status applyAssociations(FileAssociations& associations, const Options& before, const Options& after);

}  // namespace glimmer
