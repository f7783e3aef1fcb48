#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "editor/document/content.h"

namespace glimmer {

/// A picture in the recovery folder: bands of rows, each deflated in a file of its own, named by its number.
struct StoredPicture {
    struct Band {
        uint64_t file = 0;
        uint32_t length = 0;    ///< of the file, in bytes
        uint32_t checksum = 0;  ///< CRC-32 of the file
        bool operator==(const Band&) const = default;
    };
    Size size;
    std::vector<Band> bands;  ///< from the top, bandRows(size) rows each

    /// About half a megabyte of pixels: a few milliseconds of work.
    static int32_t bandRows(Size size);
    static size_t bandCount(Size size);
    bool operator==(const StoredPicture&) const = default;
};

/// What a capture's recovery consists of; replaced as a whole whenever the files that it names are complete.
struct RecoveryManifest {
    CaptureInfo info;
    StoredPicture background;
    struct Annotation {
        std::vector<uint8_t> record;  ///< annotation_record.h
        int32_t drawing = -1;         ///< index into drawings, or none
    };
    std::vector<Annotation> annotations;  ///< in painting order
    std::vector<StoredPicture> drawings;
};

/// Limits of what is read back.
constexpr size_t maxManifestBytes = size_t{64} * 1024 * 1024;
constexpr uint32_t maxStoredAnnotations = 100000;

/// Little-endian, with a checksum over everything at the end.
std::vector<uint8_t> encodeManifest(const RecoveryManifest& manifest);
/// Nothing unless the data is a whole, undamaged manifest within the limits.
std::optional<RecoveryManifest> decodeManifest(std::span<const uint8_t> data);

/// Whether it is a manifest of a version of the program that this one does not know. Nothing else of it can be told.
bool isUnknownVersion(std::span<const uint8_t> data);

uint32_t checksumOf(std::span<const uint8_t> data);

}  // namespace glimmer
