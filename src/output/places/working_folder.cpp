// The list is UTF-8 text, one file a line: its size in bytes, the time of its last change in the file clock's own
// ticks, and its path below the folder with "/" between the parts.

#include "output/places/working_folder.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "common/files.h"
#include "common/locked_edit.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

constexpr const char* listName = "Glimmerpad files.lst";

struct Entry {
    std::string name;
    uint64_t size = 0;
    int64_t time = 0;
    bool operator==(const Entry&) const = default;
};

/// The file as it is now; nothing when there is no ordinary file.
std::optional<Entry> entryOf(const fs::path& folder, const std::string& name) {
    std::error_code error;
    const fs::path path = folder / pathFromUtf8(name);
    if (!fs::is_regular_file(fs::symlink_status(path, error))) return std::nullopt;
    const uint64_t size = fs::file_size(path, error);
    if (error) return std::nullopt;
    const fs::file_time_type time = fs::last_write_time(path, error);
    if (error) return std::nullopt;
    return Entry{name, size, static_cast<int64_t>(time.time_since_epoch().count())};
}

/// Whether it is the file that was noted. The run-time tells a file's time by way of the local one: when the clocks go
/// forward or back, all files differ by an hour from what it said before.
bool isSame(const Entry& noted, const std::optional<Entry>& now) {
    constexpr int64_t hour = fs::file_time_type::duration(std::chrono::hours(1)).count();
    if (!now || noted.name != now->name || noted.size != now->size) return false;
    const int64_t apart = noted.time - now->time;
    return apart == 0 || apart == hour || apart == -hour;
}

/// Whether a name from the list stays inside the folder; the list may have been tampered with.
bool staysInside(const std::string& name) {
    const fs::path path = pathFromUtf8(name);
    if (name.empty() || path.has_root_path()) return false;
    return std::none_of(path.begin(), path.end(), [](const fs::path& part) { return part == ".."; });
}

template <class Number>
bool takeNumber(std::string_view& line, Number& number) {
    const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    const auto used = static_cast<size_t>(stop - line.data());
    if (error != std::errc() || used >= line.size() || line[used] != ' ') return false;
    line.remove_prefix(used + 1);
    return true;
}

std::vector<Entry> entriesIn(const FileContent& list) {
    std::vector<Entry> entries;
    if (!list) return entries;
    const std::string_view text(reinterpret_cast<const char*>(list->data()), list->size());
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size());
        std::string_view line = text.substr(at, end - at);
        Entry entry;
        if (takeNumber(line, entry.size) && takeNumber(line, entry.time)) {
            entry.name = line;
            if (staysInside(entry.name)) entries.push_back(entry);
        }
        at = end + 1;
    }
    return entries;
}

/// Has the entries of a folder's list changed. A list that cannot be read begins anew.
Status changeList(const fs::path& folder, const std::function<void(std::vector<Entry>&)>& change) {
    return editLockedFile(folder / listName, [&](const FileContent& now) -> Result<NewContent> {
        const std::vector<Entry> before = entriesIn(now);
        std::vector<Entry> entries = before;
        change(entries);
        if (entries == before) return NewContent();
        std::string text;
        for (const Entry& entry : entries)
            text += std::to_string(entry.size) + ' ' + std::to_string(entry.time) + ' ' + entry.name + '\n';
        return NewContent(std::in_place, text.begin(), text.end());
    });
}

}  // namespace

WorkingFolder::WorkingFolder(fs::path folder) : folder_(std::move(folder)) {}

Status WorkingFolder::remember(const fs::path& file) {
    std::error_code error;
    const fs::path below = fs::relative(file, folder_, error);
    const std::u8string generic = below.generic_u8string();
    const std::string name(generic.begin(), generic.end());
    const std::optional<Entry> entry = error || !staysInside(name) ? std::nullopt : entryOf(folder_, name);
    if (!entry) return Failure{"The file " + utf8FromPath(file) + " is not in the working folder."};
    return changeList(folder_, [&](std::vector<Entry>& entries) {
        std::erase_if(entries, [&name](const Entry& known) { return known.name == name; });
        entries.push_back(*entry);
    });
}

size_t WorkingFolder::cleanUp(std::chrono::hours age, fs::file_time_type now, const fs::path& subFolder) {
    const std::string part = subFolder.empty() ? "" : utf8FromPath(subFolder) + '/';
    std::error_code none;
    if (!fs::exists(folder_ / listName, none)) return 0;
    const auto oldest = static_cast<int64_t>((now - age).time_since_epoch().count());
    size_t deleted = 0;
    const auto isDone = [&](const Entry& entry) {
        if (!isSame(entry, entryOf(folder_, entry.name))) return true;
        std::error_code error;
        const bool wanted = entry.time < oldest && entry.name.starts_with(part);
        if (!wanted || !fs::remove(folder_ / pathFromUtf8(entry.name), error)) return false;
        ++deleted;
        return true;
    };
    // Files that were deleted but are still listed are forgotten the next time.
    static_cast<void>(changeList(folder_, [&](std::vector<Entry>& entries) { std::erase_if(entries, isDone); }));
    return deleted;
}

}  // namespace glimmer
