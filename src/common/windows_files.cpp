#include "common/windows_files.h"

#include "common/file_holders.h"
#include "common/files.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

bool isThere(const fs::path& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

/// Access is also denied when the file is open elsewhere, or while one that was deleted is still open: asked for
/// nothing but the right to delete, the system tells one from the other.
FileTrouble deniedBecause(const fs::path& target) {
    constexpr DWORD anybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file =
        CreateFileW(target.c_str(), DELETE, anybody, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) return troubleOf(GetLastError());
    CloseHandle(file);
    return FileTrouble::Refused;
}

FileTrouble moved(const fs::path& file, const fs::path& target, DWORD flags, const PlacingCalls& calls) {
    if (calls.move(file.c_str(), target.c_str(), flags) != FALSE) return FileTrouble::None;
    const DWORD error = GetLastError();
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return (flags & MOVEFILE_REPLACE_EXISTING) != 0 ? FileTrouble::Other : FileTrouble::Exists;
    return error == ERROR_ACCESS_DENIED && attributes != INVALID_FILE_ATTRIBUTES ? deniedBecause(target)
                                                                                 : troubleOf(error);
}

FileTrouble replaced(const fs::path& file, const fs::path& target, bool inherits) {
    return inherits ? replaceInheriting(file, target) : moved(file, target, MOVEFILE_REPLACE_EXISTING, {});
}

// Without the flag for it the system renames only to a name that is free, in one step, on shares too.
FileTrouble placed(const fs::path& file, const fs::path& target) { return moved(file, target, 0, {}); }

std::string explainTrouble(const fs::path& target, FileTrouble trouble) {
    if (trouble == FileTrouble::Protected) return "The file is write-protected.";
    if (trouble == FileTrouble::HalfWay)
        return "The former file is in the same folder, under the name " + utf8FromPath(formerPath(target).filename()) +
               ".";
    if (trouble != FileTrouble::InUse && trouble != FileTrouble::Refused) return {};
    if (isThere(target))
        if (std::string sentence = openIn(holdersOf(target)); !sentence.empty()) return sentence;
    if (trouble == FileTrouble::InUse) return "Another program has the file open.";
    return "Windows' ransomware protection may keep this program from writing there.";
}

}  // namespace

FileTrouble troubleOf(DWORD error) {
    switch (error) {
        case ERROR_SUCCESS:
            return FileTrouble::None;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return FileTrouble::Full;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return FileTrouble::Exists;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_DELETE_PENDING:
            return FileTrouble::InUse;
        case ERROR_FILE_NOT_FOUND:  // what controlled folder access answers; a missing folder is another error
        case ERROR_ACCESS_DENIED:
            return FileTrouble::Refused;
        case ERROR_WRITE_PROTECT:
            return FileTrouble::Protected;
        default:
            return FileTrouble::Other;
    }
}

namespace {

/// Nothing has the target's name: the file gets it, or the former file, where there is one, gets it back.
FileTrouble finished(const fs::path& file, const fs::path& target, const PlacingCalls& calls) {
    const fs::path former = formerPath(target);
    const FileTrouble trouble = moved(file, target, 0, calls);
    if (trouble == FileTrouble::None) DeleteFileW(former.c_str());
    // Somebody made one in this moment: it is to be replaced as well, at the next attempt.
    if (trouble == FileTrouble::Exists) return FileTrouble::InUse;
    if (trouble == FileTrouble::None || !isThere(former)) return trouble;
    return moved(former, target, 0, calls) == FileTrouble::None ? trouble : FileTrouble::HalfWay;
}

}  // namespace

FileTrouble replaceInheriting(const fs::path& file, const fs::path& target, const PlacingCalls& calls) {
    if (!isThere(target)) return finished(file, target, calls);
    // With a name to keep the former file under, no way of failing takes it away. A file system without rights, or a
    // user who may not set them, is no reason not to save.
    const fs::path former = formerPath(target);
    if (calls.replace(target.c_str(), file.c_str(), former.c_str(), REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                      nullptr) != FALSE) {
        // Tried again, since it has just been touched; what cannot be removed goes later, as abandoned.
        for (int attempt = 0; DeleteFileW(former.c_str()) == FALSE && attempt < 5 && isThere(former); ++attempt)
            Sleep(20);
        return FileTrouble::None;
    }
    const FileTrouble trouble = troubleOf(GetLastError());
    // ERROR_UNABLE_TO_MOVE_REPLACEMENT_2: the former file has its other name already.
    if (!isThere(target)) return finished(file, target, calls);
    // Both files are what they were (ERROR_UNABLE_TO_REMOVE_REPLACED, ERROR_UNABLE_TO_MOVE_REPLACEMENT and all others).
    // The system that does not do this here (a name too long for the former file's), or asks for more rights than it
    // takes to rename, renames.
    return trouble == FileTrouble::InUse ? trouble : moved(file, target, MOVEFILE_REPLACE_EXISTING, calls);
}

void connectFiles() {
    static const FileOperations operations{portableFileOperations().create, replaced, placed, explainTrouble};
    setFileOperations(&operations);
}

}  // namespace glimmer
