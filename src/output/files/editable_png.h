#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/bitmap.h"
#include "common/geometry.h"
#include "common/result.h"
#include "editor/annotations/shapes_list.h"
#include "editor/annotations/uShapes.h"
#include "imaging/png_codec.h"
#include "output/files/file_limits.h"

namespace glimmer {

/// What makes a saved picture editable, as its owner has it.
struct EditableParts {
    const TBitmap& background;  ///< clean: pixel operations are in it, annotations are not
    const TShapesList& shapes;
    Rect area;  ///< the editor's working area
    const std::string& notes;
};

/// Writes a PNG file that shows `flattened` and, with `embedNativeInfo`, carries the parts: texts VERSION, CREATOR and
/// GNOTES, the area, the annotations in painting order, the background, the annotations' own pictures. Without it
/// the file holds nothing but the pixels. Fails as writePng() does, and on what readEditablePng() would open flat.
Status writeEditablePng(const TBitmap& flattened, const EditableParts& parts, bool embedNativeInfo,
                        const ByteSink& sink, const Progress& progress = {}, const EditableLimits& limits = {});
/// The same into memory.
Result<std::vector<uint8_t>> encodeEditablePng(const TBitmap& flattened, const EditableParts& parts,
                                               bool embedNativeInfo, const Progress& progress = {},
                                               const EditableLimits& limits = {});

/// What was read for editing.
struct EditablePicture {
    TBitmap background;  ///< 32 bits
    TShapesList shapes;
    Rect area;  ///< inside the background
    std::string notes;
};

struct OpenedPicture {
    /// The parts of an editable file; of any other file the visible picture, without annotations.
    EditablePicture picture;
    /// Background and annotations were found whole. Otherwise the picture opens flat, and a user who opens it for
    /// editing is told missingDataText.
    bool editable = false;
};

/// Message and caption for a file without the parts.
constexpr const char* missingDataText = "The file doesn't contain some data for Glimmerpad.";
constexpr const char* missingDataCaption = "Error";

/// Opens any PNG file. Fails only when the visible picture cannot be read; parts that are missing, damaged or of an
/// unknown version leave the picture flat.
Result<OpenedPicture> readEditablePng(std::span<const uint8_t> file, const EditableLimits& limits = {});

}  // namespace glimmer
