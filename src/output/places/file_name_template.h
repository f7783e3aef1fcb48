#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "common/clock.h"

namespace glimmer {

/// How default file names are made; kept with the options.
struct FileNameTemplate {
    std::string text;        ///< with the placeholders %u %t %y %m %d %H %M %S %n
    int32_t nextNumber = 1;  ///< 0 to 32767
    bool padNumber = true;
    int32_t padding = 3;  ///< least number of digits, 2 to 10

    static constexpr int32_t largestNumber = 32767;
};

/// The default name, without folder and extension, of a capture of the page `address` called `title`. Raises
/// `settings.nextNumber` when the template uses it. The name holds at most 251 UTF-16 units, is never empty, leads
/// out of no folder and is one that Windows accepts.
std::string defaultFileName(FileNameTemplate& settings, std::string_view address, std::string_view title, Clock& clock);

/// The template with its placeholders replaced and nothing else done to it.
std::string withPlaceholdersReplaced(const FileNameTemplate& settings, std::string_view address, std::string_view title,
                                     Clock& clock);

/// What defaultFileName does last, for names from elsewhere: drops control characters and whatever reverses the
/// reading order, trims blanks, replaces nothing by "Untitled" and puts "_" before a name of a device.
std::string safeFileName(std::string_view name);
/// Replaces the characters that no file name may hold, the dot included.
std::string withoutForbiddenCharacters(std::string_view name);

/// A path in `folder` that no file has yet: the name and extension (with its dot), then with " (2)", " (3)" and so
/// on. A name that makes the path longer than Windows takes is cut.
std::filesystem::path freePath(const std::filesystem::path& folder, std::string_view name, std::string_view extension);

}  // namespace glimmer
