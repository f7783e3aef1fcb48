#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "editor/annotations/uShapes.h"

namespace glimmer {

/// Name under which annotations are registered with the system's clipboard.
constexpr const char* annotationClipboardFormat = "Glimmerpad Clipboard Object";
/// What a paste accepts at most.
constexpr size_t maxClipboardAnnotations = 1000;
constexpr size_t maxClipboardBytes = size_t{256} * 1024 * 1024;

/// Annotations as one block of bytes that another process understands. Layout, little-endian: the mark "GPAN", version
/// 1, count; then for each annotation the length of its record and the record (annotation_record.h), and the length of
/// its drawing and the drawing as a PNG file (0: none).
std::vector<uint8_t> encodeAnnotations(const std::vector<TBBShape>& shapes);
/// The inverse; nothing when the block is not whole. The clipboard may hand out more bytes than were put there, so
/// bytes behind the last annotation do not matter.
std::vector<TBBShape> decodeAnnotations(std::span<const uint8_t> data);

}  // namespace glimmer
