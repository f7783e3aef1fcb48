#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/geometry.h"

namespace glimmer {

/// An annotated area of a picture on the page.
struct PageArea {
    Rect area;         ///< picture pixels
    std::string text;  ///< the annotation's text
};

/// One capture on an exported page. All text is UTF-8 and plain.
struct PageCapture {
    std::string caption;
    std::string imagePath;  ///< relative to the page, "/" between its parts
    Size size;              ///< of the picture
    std::vector<PageArea> areas;
    std::string notes;
};

/// Folder of a page's pictures, relative to the page, with its closing backslash.
std::string pageFolder(std::string_view pageName);
/// Name, without extension, of the picture number `index` (from 1) of a page.
std::string pagePictureName(std::string_view pageName, int index);

/// A whole HTML 5 page, UTF-8, that shows the captures one below the other, each with its annotations and notes.
/// `pageName` is the page's file name without extension.
std::string htmlPage(std::string_view pageName, std::span<const PageCapture> captures);

/// Text as HTML shows it, inside an element or a quoted attribute.
std::string escapedForHtml(std::string_view text);
/// Text as it stands in a script's quoted string inside an attribute: no character of it means anything to the
/// script or to HTML.
std::string escapedForScript(std::string_view text);

}  // namespace glimmer
