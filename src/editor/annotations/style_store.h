#pragma once

#include <string>
#include <vector>

#include "editor/annotations/new_annotation_options.h"
#include "editor/annotations/styles.h"
#include "settings/cached_mem_ini_file.h"

namespace glimmer {

/// The style that was last used, or "Default" before there was one. What the options say of new annotations' places
/// and font is taken over where it changed since the style was kept, with or without a canvas open.
TShapeStyle lastUsedStyle(const NewAnnotationOptions& options);
/// Keeps it for the next start, with the options that it follows.
void rememberLastUsedStyle(const TShapeStyle& style, const NewAnnotationOptions& options);

/// The predefined styles followed by those that the user stored, in the file's order. A stored one of a predefined
/// one's name stands in its place.
std::vector<TShapeStyle> allStyles();
/// Stores a style under its name, which is cut to what a section name can hold.
void storeStyle(const TShapeStyle& style);
void deleteStyle(const std::string& name);

/// The same on a store of one's own.
TShapeStyle readStyle(const TCachedMemIniFile& store, const std::string& name, const TShapeStyle& standard);
void writeStyle(TCachedMemIniFile& store, const std::string& name, const TShapeStyle& style);

}  // namespace glimmer
