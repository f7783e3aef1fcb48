#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editor/document/content.h"

namespace glimmer {

/// The two lists of a project file, one line a capture.

/// Names: backslash, line ends and tabs escaped as \\ \n \r \t.
std::string projectNames(const std::vector<CaptureInfo>& captures);
/// Time, address and title, parted by tabs, escaped likewise.
std::string projectPages(const std::vector<CaptureInfo>& captures);

/// The captures' names, addresses, titles and times from the lists; nothing when the lists are damaged or tell of
/// different numbers of captures. An empty `pages` serves as a list of nothing known.
std::optional<std::vector<CaptureInfo>> projectInfos(std::string_view names, std::string_view pages);

}  // namespace glimmer
