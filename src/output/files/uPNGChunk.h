#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/bitmap.h"
#include "common/geometry.h"
#include "common/result.h"
#include "editor/annotations/uShapes.h"
#include "imaging/png_codec.h"

namespace glimmer {

/// A chunk's payload while the picture is in memory.
using TMemoryStream = std::vector<uint8_t>;

/// The annotation chunk "bBIn": a kind byte, then a stream. Its name says: may be ignored, safe to copy.
class TChunkbBIn {
public:
    static constexpr const char* type = "bBIn";
    enum class Kind : uint8_t { Annotation = 1, Rectangle = 2 };

    TChunkbBIn() = default;
    /// The record of one annotation; see annotation_record.h. The argument must be there.
    static TChunkbBIn fromAnnotation(const TShapeDescriptor* annotation);
    static TChunkbBIn fromRectangle(const Rect& rect);

    /// The chunk to be written. Asserts that there is a stream, "pMS!=NULL".
    [[nodiscard]] PngChunk save() const;
    /// Takes a chunk's data apart; false when there is not even a kind.
    bool load(std::span<const uint8_t> data);

    [[nodiscard]] uint8_t kind() const { return kind_; }
    /// The stream behind the kind byte. Asserts that there is one.
    [[nodiscard]] const TMemoryStream& stream() const;
    /// The rectangle of kind Rectangle; nothing when the chunk is no such.
    [[nodiscard]] std::optional<Rect> rectangle() const;

private:
    uint8_t kind_ = 0;
    std::optional<TMemoryStream> pMS_;
};

/// The picture chunk "bBPn": a complete PNG file.
class TChunkbBPn {
public:
    static constexpr const char* type = "bBPn";

    TChunkbBPn() = default;
    /// The argument must be there ("pBitmap!=NULL"). Fails where encoding does.
    static Result<TChunkbBPn> fromBitmap(const TBitmap* bitmap, const Progress& progress = {});

    [[nodiscard]] PngChunk save() const;
    bool load(std::span<const uint8_t> data);

    [[nodiscard]] const TMemoryStream& stream() const;
    /// Width and height as the PNG file says, without decoding it; nothing when it is none.
    [[nodiscard]] std::optional<Size> size() const;
    /// Decodes the picture. An empty stream is an assertion, "pMS->Size>0".
    [[nodiscard]] Result<TBitmap> bitmap() const;

private:
    std::optional<TMemoryStream> pMS_;
};

}  // namespace glimmer
