#pragma once

#include <string>

namespace glimmer {

/// Starts programs and opens files and addresses: one class for people, others for tests.
class ShellStart {
public:
    virtual ~ShellStart() = default;
    /// Opens a program, document, folder or web address with the verb "open", a program with these parameters.
    /// Whether that began. All UTF-8.
    ///
    /// A program's bare name is looked for where the system keeps its own and where programs register themselves, never
    /// in the current folder, which may be the one that a document was opened from.
    virtual bool open(const std::string& target, const std::string& parameters) = 0;
    /// Opens a file in what the user has for changing files of its kind. Whether that began.
    virtual bool edit(const std::string& /*file*/) { return false; }
};

/// What starts things now; the system's own unless it was replaced.
ShellStart& shellStart();
/// Null means the system's again. The object must live until it is replaced.
void setShellStart(ShellStart* start);

/// Opens a folder window with the file selected.
bool showInFolder(const std::string& path);

}  // namespace glimmer
