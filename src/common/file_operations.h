#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

namespace glimmer {

/// Why a file could not be made or could not take its place.
enum class FileTrouble : uint8_t {
    None,
    Exists,     ///< there is a file of that name, and it is not to be replaced
    InUse,      ///< another program has the file open
    Refused,    ///< the rights to write there are missing, or are taken away (by a protection against ransomware)
    Protected,  ///< the file is write-protected
    HalfWay,    ///< the former file is at formerPath() and nothing has its name: the new one must not be removed
    Full,       ///< the disk has no room
    Other,      ///< the folder is gone, the disk is broken
};

/// Opens a file that is there; null when it cannot.
enum class OpenMode : uint8_t { Read, Change };
std::FILE* openFile(const std::filesystem::path& path, OpenMode mode);
/// Writes what was put into the file through to the disk; whether it is there.
bool flushToDisk(std::FILE* file);
int processId();

/// What writing files needs of the system. The core has a portable way of each; the application installs what Windows
/// does better, and a test what it wants to see go wrong.
struct FileOperations {
    /// Makes a file that was not there and opens it for writing; while it is open nobody else may write or remove it.
    /// Null, with the reason, when it cannot be made: Exists when there is one.
    std::FILE* (*create)(const std::filesystem::path& path, FileTrouble& trouble);
    /// Gives a closed file the name of `target` in the same folder, over a file that has it; one attempt. When
    /// `inherits` is set the file takes over what hung on the former one (rights, attributes, streams, creation time)
    /// as far as the system can; otherwise the name passes on in one step. Unless it succeeds both files are what they
    /// were before, but for HalfWay.
    FileTrouble (*replace)(const std::filesystem::path& file, const std::filesystem::path& target, bool inherits);
    /// The same where nobody has that name; Exists otherwise, also when another process was quicker by a hair.
    FileTrouble (*place)(const std::filesystem::path& file, const std::filesystem::path& target);
    /// What can be said to a person who could not write that file: a sentence, or nothing. May take a second.
    std::string (*explain)(const std::filesystem::path& target, FileTrouble trouble);
    bool (*flush)(std::FILE* file) = flushToDisk;
};

/// What the core can do by itself.
const FileOperations& portableFileOperations();
/// What files are written with; null means portableFileOperations() again. The object must live until then.
void setFileOperations(const FileOperations* operations);
const FileOperations& fileOperations();

/// What explain() says, preceded by a line end; nothing when there is nothing to say.
std::string explained(const std::filesystem::path& target, FileTrouble trouble);

}  // namespace glimmer
