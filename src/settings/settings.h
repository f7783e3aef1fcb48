#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/cached_mem_ini_file.h"

namespace glimmer {

/// The one store that the forms of this process share, on the file settingsPath(). Opened at first use.
TCachedMemIniFile& settings();
/// Writes the shared store back and closes it; the next settings() opens it anew. At the end of a session.
void closeSettings();

/// Every section lies below this registry-style key.
inline constexpr std::string_view settingsRoot = "\\Software\\Glimmerpad for Firefox";

/// Full section name of a group, e.g. settingsSection(group::general).
std::string settingsSection(std::string_view group);

namespace group {
inline constexpr std::string_view general = "General";
inline constexpr std::string_view editorSettings = "EditorSettings";
inline constexpr std::string_view windows = "Wndws";
inline constexpr std::string_view styles = "Styles";
inline constexpr std::string_view uploader = "Uploader";
inline constexpr std::string_view uploadsHistory = "UploadsHistory";
inline constexpr std::string_view uploadForm = "UploadForm";
inline constexpr std::string_view publishSettings = "PublishSettings";
inline constexpr std::string_view printer = "Printer";
inline constexpr std::string_view monitorSelector = "MonitorSelector";
inline constexpr std::string_view mailSettings = "MailSettings";
inline constexpr std::string_view jpegSettings = "JPEGSettings";
inline constexpr std::string_view clipboardSettings = "ClipboardSettings";
}  // namespace group

/// The style name that holds the style last used.
inline constexpr std::string_view lastUsedStyleName = "!###last used style ###!";
/// The section of a style.
std::string styleSection(std::string_view styleName);
/// The names of all stored styles, each of at most 1000 characters, in the file's order. A section that is the styles'
/// key itself gives an empty name, and the style last used is among them: both are for the caller to skip.
std::vector<std::string> styleNames(const TCachedMemIniFile& store);

}  // namespace glimmer
