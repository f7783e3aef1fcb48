#include "output/places/file_name_template.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "common/files.h"
#include "common/text.h"

namespace glimmer {

namespace {

constexpr size_t longestName = 250;  // UTF-16 units
constexpr size_t longestPath = 259;  // UTF-16 units; MAX_PATH without its terminator

std::string padded(int32_t number, int32_t width) {
    std::string text = std::to_string(number);
    const auto least = static_cast<size_t>(std::max(width, 0));
    if (text.size() < least) text.insert(0, least - text.size(), '0');
    return text;
}

std::string withoutProtocols(std::string_view address) {
    std::string text(address);
    // "http://" twice: removing one can make another out of what stood around it.
    for (const char* protocol : {"http://", "http://", "ftp://", "https://"})
        text = replaceAllIgnoringCase(text, protocol, "");
    return text;
}

bool isDeviceName(std::string_view name) {
    const std::string base = upperAscii(trimmed(name.substr(0, name.find('.')), " "));
    for (const char* device : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"})
        if (base == device) return true;
    if (!base.starts_with("COM") && !base.starts_with("LPT")) return false;
    const std::string number = base.substr(3);
    // Windows takes the superscript digits one to three for digits here.
    for (const char* superscript : {"\u00b9", "\u00b2", "\u00b3"})
        if (number == superscript) return true;
    return number.size() == 1 && number[0] >= '1' && number[0] <= '9';
}

/// Units that have no business in a name: control characters, marks that turn the reading order (a name could show
/// a false extension with them), halves of pairs, and the two non-characters at the end.
bool isUnwanted(std::u16string_view text, size_t at) {
    const char16_t unit = text[at];
    const auto isHigh = [](char16_t u) { return u >= 0xD800 && u <= 0xDBFF; };
    const auto isLow = [](char16_t u) { return u >= 0xDC00 && u <= 0xDFFF; };
    if (isHigh(unit)) return at + 1 >= text.size() || !isLow(text[at + 1]);
    if (isLow(unit)) return at == 0 || !isHigh(text[at - 1]);
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F) || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069) || unit == 0x200E || unit == 0x200F || unit >= 0xFFFE;
}

}  // namespace

std::string withoutForbiddenCharacters(std::string_view name) {
    constexpr std::array<std::pair<const char*, const char*>, 10> replacements{{{"/", "_"},
                                                                                {".", "_"},
                                                                                {"?", "_"},
                                                                                {":", "_"},
                                                                                {"*", "_"},
                                                                                {"|", "I"},
                                                                                {"<", "{"},
                                                                                {">", "}"},
                                                                                {"\\", "_"},
                                                                                {"\"", "_"}}};
    std::string text(name);
    for (const auto& [from, to] : replacements) text = replaceAll(text, from, to);
    return text;
}

std::string safeFileName(std::string_view name) {
    const std::u16string units = toUtf16(name);
    std::u16string kept;
    for (size_t i = 0; i < units.size(); ++i)
        if (!isUnwanted(units, i)) kept.push_back(units[i]);
    std::string safe = trimmed(toUtf8(kept));
    if (safe.empty()) safe = "Untitled";
    return isDeviceName(safe) ? "_" + safe : safe;
}

std::string withPlaceholdersReplaced(const FileNameTemplate& settings, std::string_view address, std::string_view title,
                                     Clock& clock) {
    const std::string number =
        settings.padNumber ? padded(settings.nextNumber, settings.padding) : std::to_string(settings.nextNumber);
    // One after the other, each over the whole text: a placeholder in the address or title is replaced as well.
    std::string name = replaceAll(settings.text, "%u", withoutProtocols(address));
    name = replaceAll(name, "%t", title);
    name = replaceAll(name, "%y", padded(clock.now().year, 4));
    name = replaceAll(name, "%m", padded(clock.now().month, 2));
    name = replaceAll(name, "%d", padded(clock.now().day, 2));
    name = replaceAll(name, "%H", padded(clock.now().hour, 2));
    name = replaceAll(name, "%M", padded(clock.now().minute, 2));
    name = replaceAll(name, "%S", padded(clock.now().second, 2));
    return replaceAll(name, "%n", number);
}

std::string defaultFileName(FileNameTemplate& settings, std::string_view address, std::string_view title,
                            Clock& clock) {
    std::string name = withoutForbiddenCharacters(withPlaceholdersReplaced(settings, address, title, clock));
    if (name.empty()) name = "Untitled";
    name = trimmed(name);
    if (name.ends_with('_')) name.pop_back();
    name = firstUnits(name, longestName);

    if (settings.text.find("%n") != std::string::npos)
        settings.nextNumber = settings.nextNumber < FileNameTemplate::largestNumber ? settings.nextNumber + 1 : 1;
    return safeFileName(name);
}

std::filesystem::path freePath(const std::filesystem::path& folder, std::string_view name, std::string_view extension) {
    const auto units = [](std::string_view text) { return toUtf16(text).size(); };
    const size_t taken = units(utf8FromPath(folder / "")) + units(extension);
    for (int copy = 1;; ++copy) {
        const std::string mark = copy == 1 ? "" : " (" + std::to_string(copy) + ")";
        // A folder that leaves no room gets the name uncut: writing then fails and says so.
        const size_t room = taken + mark.size() < longestPath ? longestPath - taken - mark.size() : units(name);
        const std::string fitting = trimmed(firstUnits(name, room));
        std::filesystem::path path = folder / pathFromUtf8(fitting + mark + std::string(extension));
        std::error_code error;
        if (std::filesystem::symlink_status(path, error).type() == std::filesystem::file_type::not_found || error)
            return path;
    }
}

}  // namespace glimmer
