#include "output/editable_png.h"

#include <utility>

#include "common/assertion.h"
#include "editor/annotation_record.h"
#include "output/uPNGChunk.h"

namespace glimmer {

namespace {

constexpr const char* versionText = "1.8";
constexpr const char* creatorText = "GLIMMERPAD";
constexpr const char* notesKeyword = "GNOTES";

/// Progress of one picture of several: `done` of `all` are finished.
Progress partOf(const Progress& progress, size_t done, size_t all) {
    if (!progress) return {};
    return [&progress, done, all](double part) {
        return progress((static_cast<double>(done) + part) / static_cast<double>(all));
    };
}

// --- reading

/// The chunks of a file by what they are, none decoded yet.
struct Found {
    std::vector<TChunkbBIn> annotations;
    std::optional<Rect> area;
    std::vector<TChunkbBPn> pictures;  ///< the background, then the annotations' own
};

/// Nothing when a chunk is of an unknown kind or a rectangle is missing, damaged or there twice.
std::optional<Found> sortChunks(std::vector<PngChunk>& chunks) {
    Found found;
    for (PngChunk& chunk : chunks) {
        if (chunk.type == TChunkbBPn::type) {
            found.pictures.emplace_back().load(chunk.data);
        } else if (chunk.type == TChunkbBIn::type) {
            TChunkbBIn in;
            if (!in.load(chunk.data)) return std::nullopt;
            if (in.kind() == static_cast<uint8_t>(TChunkbBIn::Kind::Annotation)) {
                found.annotations.push_back(std::move(in));
            } else {
                const std::optional<Rect> rect = in.rectangle();
                if (!rect || found.area) return std::nullopt;
                found.area = rect;
            }
        }
        chunk.data = {};  // large; not needed twice
    }
    if (!found.area || found.pictures.empty()) return std::nullopt;
    return found;
}

/// Whether the background is as large as the visible picture and the others keep within their bound, by what their
/// headers say: nothing is decoded to find out.
bool sizesAllowed(const Found& found, Size visible) {
    if (found.pictures[0].size() != visible) return false;
    int64_t pixels = 0;
    for (size_t i = 1; i < found.pictures.size(); ++i) {
        const std::optional<Size> size = found.pictures[i].size();
        if (!size) return false;
        pixels += int64_t{size->width} * size->height;
    }
    return pixels <= maxDrawingPixels;
}

std::optional<std::vector<AnnotationRecord>> decodeAll(const std::vector<TChunkbBIn>& chunks) {
    std::vector<AnnotationRecord> records;
    for (const TChunkbBIn& chunk : chunks) {
        std::optional<AnnotationRecord> record = decodeAnnotation(chunk.stream());
        if (!record) return std::nullopt;
        records.push_back(std::move(*record));
    }
    return records;
}

/// The parts, or nothing when they are not all there and whole.
std::optional<EditablePicture> assemble(std::vector<PngChunk>& chunks, Size visible) {
    std::optional<Found> found = sortChunks(chunks);
    if (!found || !sizesAllowed(*found, visible)) return std::nullopt;
    std::optional<std::vector<AnnotationRecord>> records = decodeAll(found->annotations);
    if (!records) return std::nullopt;
    size_t drawings = 0;
    for (const AnnotationRecord& record : *records) drawings += record.hasDrawing ? 1 : 0;
    if (found->pictures.size() != 1 + drawings) return std::nullopt;

    EditablePicture picture;
    size_t next = 1;
    for (AnnotationRecord& record : *records) {
        if (record.hasDrawing) {
            Result<TBitmap> drawing = found->pictures[next].bitmap();
            if (!drawing) return std::nullopt;
            record.descriptor.drawing = std::make_shared<const TBitmap>(drawing.take());
            found->pictures[next++].load({});
        }
        clampDescriptor(record.descriptor);
        picture.shapes.insert(picture.shapes.size(), TBBShape(record.descriptor));
    }
    Result<TBitmap> background = found->pictures[0].bitmap();
    if (!background) return std::nullopt;
    picture.background = background.take();
    picture.area = found->area->normalized().intersected(picture.background.bounds());
    if (picture.area.empty()) picture.area = picture.background.bounds();
    return picture;
}

}  // namespace

Status writeEditablePng(const TBitmap& flattened, const EditableParts& parts, bool embedNativeInfo,
                        const ByteSink& sink, const Progress& progress) {
    if (!embedNativeInfo) return writePng(flattened, {}, sink, progress);
    PngExtras extras;
    extras.texts = {{"VERSION", versionText}, {"CREATOR", creatorText}, {notesKeyword, parts.notes}};
    extras.chunks.push_back(TChunkbBIn::fromRectangle(parts.area).save());
    std::vector<const TBitmap*> pictures = {&parts.background};
    std::vector<std::shared_ptr<const TBitmap>> drawings;
    for (const TBBShape& shape : parts.shapes) {
        TShapeDescriptor annotation = shape.describe();
        clampDescriptor(annotation);
        extras.chunks.push_back(TChunkbBIn::fromAnnotation(&annotation).save());
        if (annotation.drawing != nullptr) drawings.push_back(annotation.drawing);
    }
    for (const auto& drawing : drawings) pictures.push_back(drawing.get());
    for (size_t i = 0; i < pictures.size(); ++i) {
        const Result<TChunkbBPn> chunk = TChunkbBPn::fromBitmap(pictures[i], partOf(progress, i, pictures.size() + 1));
        if (!chunk) return chunk.failure();
        extras.chunks.push_back(chunk->save());
    }
    return writePng(flattened, extras, sink, partOf(progress, pictures.size(), pictures.size() + 1));
}

Result<std::vector<uint8_t>> encodeEditablePng(const TBitmap& flattened, const EditableParts& parts,
                                               bool embedNativeInfo, const Progress& progress) {
    std::vector<uint8_t> file;
    const ByteSink append = [&file](std::span<const uint8_t> data) {
        file.insert(file.end(), data.begin(), data.end());
        return Status();
    };
    const Status status = writeEditablePng(flattened, parts, embedNativeInfo, append, progress);
    if (!status) return status.failure();
    return file;
}

Result<OpenedPicture> readEditablePng(std::span<const uint8_t> file) {
    Result<PngPicture> png = readPng(file);
    if (!png) return png.failure();
    OpenedPicture opened;
    try {
        if (!png->chunksRefused) {
            if (std::optional<EditablePicture> parts = assemble(png->extras.chunks, png->bitmap.size())) {
                opened.picture = std::move(*parts);
                opened.editable = true;
            }
        }
    } catch (const AssertionFailure&) {
        // A record or picture of a foreign hand; as if it were not there.
        opened.picture = {};
    }
    if (!opened.editable) {
        opened.picture.background = std::move(png->bitmap);
        opened.picture.area = opened.picture.background.bounds();
    }
    for (const PngText& text : png->extras.texts)
        if (text.keyword == notesKeyword) opened.picture.notes = text.text;
    return opened;
}

}  // namespace glimmer
