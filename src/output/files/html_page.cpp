#include "output/files/html_page.h"

#include <array>
#include <utility>

#include "common/text.h"

// The page is a template with tags. A tag is replaced once and what it is replaced by is not looked at again, so a
// text that looks like a tag stays as it is.

namespace glimmer {

namespace {

using Tag = std::pair<std::string_view, std::string>;

constexpr std::string_view pageTemplate = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{file_name}</title>
<style>
body { margin: 2em; font-family: "Segoe UI", Arial, sans-serif; color: #202428; background: #f4f5f7; }
section { margin: 0 0 2em; padding: 1em; background: #ffffff; border: 1px solid #d8dce0; border-radius: 6px; }
h1, h2 { font-weight: 600; overflow-wrap: anywhere; }
img { max-width: none; border: 1px solid #d8dce0; }
.picture { overflow: auto; }
table { border-collapse: collapse; margin: 1em 0; }
td { padding: 0.3em 0.8em; border: 1px solid #d8dce0; white-space: pre-wrap; }
</style>
</head>
<body>
<h1>{file_name}</h1>
{captures}</body>
</html>
)";

constexpr std::string_view captureTemplate = R"(<section>
<h2>{caption}</h2>
<div class="picture"><img src="{image_source}" width="{width}" height="{height}" alt="{caption}" usemap="#{map}"></div>
<map name="{map}">
{areas}</map>
{annotation_table}{notes}</section>
)";

std::string filled(std::string_view text, std::span<const Tag> tags) {
    std::string out;
    while (!text.empty()) {
        const size_t open = text.find('{');
        out += text.substr(0, open);
        if (open == std::string_view::npos) break;
        text.remove_prefix(open);
        const size_t close = text.find('}');
        const std::string_view name = close == std::string_view::npos ? "" : text.substr(1, close - 1);
        const std::string* value = nullptr;
        for (const Tag& tag : tags)
            if (tag.first == name) value = &tag.second;
        if (value != nullptr) {
            out += *value;
            text.remove_prefix(close + 1);
        } else {  // a brace of the style sheet
            out += '{';
            text.remove_prefix(1);
        }
    }
    return out;
}

/// A relative path as an address.
std::string escapedForAddress(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string out;
    for (const char c : path) {
        if (plain.find(c) != std::string_view::npos) {
            out += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            out += {'%', digits[byte >> 4U], digits[byte & 15U]};
        }
    }
    return out;
}

std::string withHtmlLineEnds(std::string_view text) {
    std::string lines = replaceAll(replaceAll(text, "\r\n", "\n"), "\r", "\n");
    return replaceAll(escapedForHtml(lines), "\n", "<br>\r\n");
}

std::string areaLine(const PageArea& area) {
    const auto number = [](int32_t value) { return std::to_string(value); };
    return "<area coords=\"" + number(area.area.left) + "," + number(area.area.top) + "," + number(area.area.right) +
           "," + number(area.area.bottom) + "\" shape=\"rect\"  href=\"#\" alt=\"" + escapedForHtml(area.text) +
           "\" onClick=\"alert('" + escapedForScript(area.text) + "'); return false;\">\n";
}

std::string captureSection(const PageCapture& capture, size_t index) {
    std::string areas;
    std::string annotations;
    for (const PageArea& area : capture.areas) {
        areas += areaLine(area);
        if (!area.text.empty()) annotations += "<tr>\r\n<td>" + escapedForHtml(area.text) + "</td>\r\n</tr>\r\n";
    }
    const std::array<Tag, 1> rows{{{"annotations", annotations}}};
    const std::string table = annotations.empty() ? "" : filled("<table>\n{annotations}</table>\n", rows);
    const std::array<Tag, 1> general{{{"general_notes", withHtmlLineEnds(capture.notes)}}};
    const std::string notes = capture.notes.empty() ? "" : filled("<p>{general_notes}</p>\n", general);
    const std::array<Tag, 8> tags{{{"caption", escapedForHtml(capture.caption)},
                                   {"image_source", escapedForAddress(capture.imagePath)},
                                   {"width", std::to_string(capture.size.width)},
                                   {"height", std::to_string(capture.size.height)},
                                   {"map", "areas" + std::to_string(index)},
                                   {"areas", areas},
                                   {"annotation_table", table},
                                   {"notes", notes}}};
    return filled(captureTemplate, tags);
}

}  // namespace

std::string pageFolder(std::string_view pageName) { return std::string(pageName) + "_files\\"; }

std::string pagePictureName(std::string_view pageName, int index) {
    return std::string(pageName) + "_img" + std::to_string(index);
}

std::string htmlPage(std::string_view pageName, std::span<const PageCapture> captures) {
    std::string sections;
    size_t index = 0;
    for (const PageCapture& capture : captures) sections += captureSection(capture, ++index);
    const std::array<Tag, 2> tags{{{"file_name", escapedForHtml(pageName)}, {"captures", sections}}};
    return filled(pageTemplate, tags);
}

std::string escapedForHtml(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                // Control characters are no part of an HTML document.
                if (static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\t' || c == '\r') out += c;
        }
    }
    return out;
}

std::string escapedForScript(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            out += "\\n";
        } else if (byte < 0x20 || byte == 0x7F || std::string_view("\\'\"<>&`").find(c) != std::string_view::npos) {
            out += {'\\', 'x', digits[byte >> 4U], digits[byte & 15U]};
        } else {
            out += c;
        }
    }
    // Two line separators that older scripts do not take inside a string.
    return replaceAll(replaceAll(out, "\u2028", "\\u2028"), "\u2029", "\\u2029");
}

}  // namespace glimmer
