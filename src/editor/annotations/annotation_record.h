#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "editor/annotations/uShapes.h"

// The record stream of one annotation, as it stands in saved pictures (after the chunk's kind byte) and on the
// clipboard. Its layout is one description in annotation_record.cpp from which writing, reading and the outline for
// the documentation come; docs/file-formats.md has the table.

namespace glimmer {

constexpr uint32_t recordVersion = 3;     ///< written
constexpr uint32_t recordVersionOld = 2;  ///< read too: strings of 8-bit characters
constexpr uint32_t recordStrings = 3;     ///< text, font name, style name

/// What a record says.
struct AnnotationRecord {
    TShapeDescriptor descriptor;  ///< in range; without its drawing, which is kept apart
    bool hasDrawing = false;      ///< whether a picture of its own belongs to it
};

/// The record of an annotation. The argument must be there (assertion "pAnnotationStruct!=NULL").
std::vector<uint8_t> encodeAnnotation(const TShapeDescriptor* annotation);

/// Reads a record of either version. Nothing when its version is unknown, or when it is cut short, too long or
/// otherwise no record. A list of other than three strings is an assertion, "pSL->Count == 3". Costs time and memory
/// in proportion to the data's length, whatever its counts say.
std::optional<AnnotationRecord> decodeAnnotation(std::span<const uint8_t> record);

/// The slots of the fixed settings in their order: "slot width meaning", style records with their eight values.
std::vector<std::string> recordOutline();

}  // namespace glimmer
