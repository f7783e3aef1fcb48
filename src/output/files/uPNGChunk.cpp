#include "output/files/uPNGChunk.h"

#include <algorithm>

#include "common/assertion.h"
#include "common/bytes.h"
#include "editor/annotations/annotation_record.h"
#include "imaging/png_chunks.h"

namespace glimmer {

namespace {

const TMemoryStream& required(const std::optional<TMemoryStream>& stream) {
    GLIMMER_ASSERT(stream.has_value(), "pMS!=NULL", "uPNGChunk");
    return *stream;
}

}  // namespace

TChunkbBIn TChunkbBIn::fromAnnotation(const TShapeDescriptor* annotation) {
    TChunkbBIn chunk;
    chunk.kind_ = static_cast<uint8_t>(Kind::Annotation);
    chunk.pMS_ = encodeAnnotation(annotation);
    return chunk;
}

TChunkbBIn TChunkbBIn::fromRectangle(const Rect& rect) {
    ByteWriter out;
    for (const int32_t side : {rect.left, rect.top, rect.right, rect.bottom}) out.i32(side);
    TChunkbBIn chunk;
    chunk.kind_ = static_cast<uint8_t>(Kind::Rectangle);
    chunk.pMS_ = out.take();
    return chunk;
}

const TMemoryStream& TChunkbBIn::stream() const { return required(pMS_); }

PngChunk TChunkbBIn::save() const {
    PngChunk chunk{type, {}};
    chunk.data.reserve(stream().size() + 1);
    chunk.data.push_back(kind_);
    chunk.data.insert(chunk.data.end(), stream().begin(), stream().end());
    return chunk;
}

bool TChunkbBIn::load(std::span<const uint8_t> data) {
    if (data.empty()) return false;
    kind_ = data[0];
    pMS_ = TMemoryStream(data.begin() + 1, data.end());
    return true;
}

std::optional<Rect> TChunkbBIn::rectangle() const {
    if (kind_ != static_cast<uint8_t>(Kind::Rectangle)) return std::nullopt;
    ByteReader in(stream());
    Rect rect;
    for (int32_t* side : {&rect.left, &rect.top, &rect.right, &rect.bottom}) *side = in.i32();
    if (!in.ok() || in.left() != 0) return std::nullopt;
    return rect;
}

Result<TChunkbBPn> TChunkbBPn::fromBitmap(const TBitmap* bitmap, const Progress& progress) {
    GLIMMER_ASSERT(bitmap != nullptr, "pBitmap!=NULL", "uPNGChunk");
    Result<std::vector<uint8_t>> file = encodePng(*bitmap, {}, progress);
    if (!file) return file.failure();
    TChunkbBPn chunk;
    chunk.pMS_ = file.take();
    return chunk;
}

const TMemoryStream& TChunkbBPn::stream() const { return required(pMS_); }

PngChunk TChunkbBPn::save() const { return {type, stream()}; }

bool TChunkbBPn::load(std::span<const uint8_t> data) {
    pMS_ = TMemoryStream(data.begin(), data.end());
    return true;
}

std::optional<Size> TChunkbBPn::size() const {
    // Signature, then the header chunk: length, type, width, height.
    constexpr size_t header = 24;
    const TMemoryStream& file = stream();
    if (file.size() < header || !std::equal(pngSignature.begin(), pngSignature.end(), file.begin()))
        return std::nullopt;
    const uint32_t width = bigEndian32(file.data() + 16);
    const uint32_t height = bigEndian32(file.data() + 20);
    if (width == 0 || height == 0 || width > TBitmap::maxSide || height > TBitmap::maxSide) return std::nullopt;
    return Size{static_cast<int32_t>(width), static_cast<int32_t>(height)};
}

Result<TBitmap> TChunkbBPn::bitmap() const {
    GLIMMER_ASSERT(!stream().empty(), "pMS->Size>0", "uPNGChunk");
    Result<PngPicture> picture = readPng(stream());
    if (!picture) return picture.failure();
    return std::move(picture->bitmap);
}

}  // namespace glimmer
