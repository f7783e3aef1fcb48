#include "editor/annotations/annotation_clipboard.h"

#include <memory>

#include "common/bytes.h"
#include "editor/annotations/annotation_record.h"
#include "imaging/png_codec.h"

namespace glimmer {

namespace {

constexpr uint32_t mark = 0x4E415047;  // "GPAN"
constexpr uint32_t version = 1;

}  // namespace

std::vector<uint8_t> encodeAnnotations(const std::vector<TBBShape>& shapes) {
    ByteWriter writer;
    writer.u32(mark);
    writer.u32(version);
    writer.u32(static_cast<uint32_t>(shapes.size()));
    for (const TBBShape& shape : shapes) {
        const TShapeDescriptor descriptor = shape.describe();
        const std::vector<uint8_t> record = encodeAnnotation(&descriptor);
        writer.u32(static_cast<uint32_t>(record.size()));
        writer.bytes(record);
        std::vector<uint8_t> picture;
        if (descriptor.drawing != nullptr) {
            // A drawing for which memory is short is left out; reading gives it an empty one.
            if (Result<std::vector<uint8_t>> file = encodePng(*descriptor.drawing)) picture = file.take();
        }
        writer.u32(static_cast<uint32_t>(picture.size()));
        writer.bytes(picture);
    }
    return writer.take();
}

std::vector<TBBShape> decodeAnnotations(std::span<const uint8_t> data) {
    if (data.size() > maxClipboardBytes) return {};
    ByteReader reader(data);
    if (reader.u32() != mark || reader.u32() != version) return {};
    const uint32_t count = reader.u32();
    if (count > maxClipboardAnnotations) return {};
    std::vector<TBBShape> shapes;
    for (uint32_t i = 0; i < count; ++i) {
        std::optional<AnnotationRecord> record = decodeAnnotation(reader.bytes(reader.u32()));
        const std::span<const uint8_t> picture = reader.bytes(reader.u32());
        if (!record || !reader.ok()) return {};
        if (!picture.empty()) {
            Result<PngPicture> drawing = readPng(picture);
            if (!drawing) return {};
            record->descriptor.drawing = std::make_shared<const TBitmap>(std::move(drawing->bitmap));
        }
        clampDescriptor(record->descriptor);
        shapes.emplace_back(record->descriptor);
    }
    return shapes;
}

}  // namespace glimmer
