#include "editor/recovery/recovery_manifest.h"

#include <zlib.h>

#include <algorithm>

#include "common/bytes.h"

namespace glimmer {

namespace {

constexpr uint32_t mark = 0x43525047;  // "GPRC"
constexpr uint32_t version = 1;
constexpr size_t bandBytes = size_t{512} * 1024;

void putText(ByteWriter& writer, const std::string& text) {
    writer.u32(static_cast<uint32_t>(text.size()));
    writer.bytes({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

std::string text(ByteReader& reader) {
    const std::span<const uint8_t> bytes = reader.bytes(reader.u32());
    return {bytes.begin(), bytes.end()};
}

void put64(ByteWriter& writer, uint64_t value) {
    writer.u32(static_cast<uint32_t>(value));
    writer.u32(static_cast<uint32_t>(value >> 32U));
}

uint64_t get64(ByteReader& reader) {
    const uint64_t low = reader.u32();
    return low | static_cast<uint64_t>(reader.u32()) << 32U;
}

void putPicture(ByteWriter& writer, const StoredPicture& picture) {
    writer.i32(picture.size.width);
    writer.i32(picture.size.height);
    for (const StoredPicture::Band& band : picture.bands) {
        put64(writer, band.file);
        writer.u32(band.length);
        writer.u32(band.checksum);
    }
}

/// False unless the size is one that a picture may have; the bands follow from it.
bool getPicture(ByteReader& reader, StoredPicture& picture) {
    picture.size = {reader.i32(), reader.i32()};
    if (!reader.ok() || !TBitmap::check(picture.size.width, picture.size.height, PixelFormat::Bgra32)) return false;
    const size_t count = StoredPicture::bandCount(picture.size);
    if (count * 16 > reader.left()) return false;
    picture.bands.resize(count);
    for (StoredPicture::Band& band : picture.bands) band = {get64(reader), reader.u32(), reader.u32()};
    return reader.ok();
}

}  // namespace

uint32_t checksumOf(std::span<const uint8_t> data) {
    return static_cast<uint32_t>(crc32(crc32(0, nullptr, 0), data.data(), static_cast<uInt>(data.size())));
}

int32_t StoredPicture::bandRows(Size size) {
    const size_t row = TBitmap::stride(size.width, PixelFormat::Bgra32);
    return static_cast<int32_t>(std::max<size_t>(1, bandBytes / std::max<size_t>(1, row)));
}

size_t StoredPicture::bandCount(Size size) {
    return static_cast<size_t>((size.height + bandRows(size) - 1) / bandRows(size));
}

std::vector<uint8_t> encodeManifest(const RecoveryManifest& manifest) {
    ByteWriter writer;
    writer.u32(mark);
    writer.u32(version);
    for (const std::string* field :
         {&manifest.info.url, &manifest.info.title, &manifest.info.name, &manifest.info.notes})
        putText(writer, *field);
    put64(writer, static_cast<uint64_t>(manifest.info.captured));
    putPicture(writer, manifest.background);
    writer.u32(static_cast<uint32_t>(manifest.drawings.size()));
    for (const StoredPicture& drawing : manifest.drawings) putPicture(writer, drawing);
    writer.u32(static_cast<uint32_t>(manifest.annotations.size()));
    for (const RecoveryManifest::Annotation& annotation : manifest.annotations) {
        writer.u32(static_cast<uint32_t>(annotation.record.size()));
        writer.bytes(annotation.record);
        writer.i32(annotation.drawing);
    }
    writer.u32(checksumOf(writer.data()));
    return writer.take();
}

bool isUnknownVersion(std::span<const uint8_t> data) {
    ByteReader reader(data);
    return reader.u32() == mark && reader.u32() != version && reader.ok();
}

std::optional<RecoveryManifest> decodeManifest(std::span<const uint8_t> data) {
    if (data.size() < 12 || data.size() > maxManifestBytes) return std::nullopt;
    ByteReader last(data.last(4));
    if (last.u32() != checksumOf(data.first(data.size() - 4))) return std::nullopt;
    ByteReader reader(data.first(data.size() - 4));
    if (reader.u32() != mark || reader.u32() != version) return std::nullopt;
    RecoveryManifest manifest;
    for (std::string* field : {&manifest.info.url, &manifest.info.title, &manifest.info.name, &manifest.info.notes})
        *field = text(reader);
    manifest.info.captured = static_cast<int64_t>(get64(reader));
    if (!getPicture(reader, manifest.background)) return std::nullopt;
    const uint32_t drawings = reader.u32();
    if (drawings > maxStoredAnnotations) return std::nullopt;
    for (uint32_t i = 0; i < drawings; ++i) {
        StoredPicture drawing;
        if (!getPicture(reader, drawing)) return std::nullopt;
        manifest.drawings.push_back(std::move(drawing));
    }
    const uint32_t annotations = reader.u32();
    if (annotations > maxStoredAnnotations) return std::nullopt;
    for (uint32_t i = 0; i < annotations; ++i) {
        RecoveryManifest::Annotation annotation;
        const std::span<const uint8_t> record = reader.bytes(reader.u32());
        annotation.record.assign(record.begin(), record.end());
        annotation.drawing = reader.i32();
        if (!reader.ok() || annotation.drawing < -1 || annotation.drawing >= static_cast<int32_t>(drawings))
            return std::nullopt;
        manifest.annotations.push_back(std::move(annotation));
    }
    if (!reader.ok() || reader.left() != 0) return std::nullopt;
    return manifest;
}

}  // namespace glimmer
