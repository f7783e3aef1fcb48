#include "output/files/editable_png.h"

#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "common/assertion.h"
#include "editor/annotations/annotation_record.h"
#include "output/files/uPNGChunk.h"

namespace glimmer {

namespace {

constexpr const char* versionText = "1.8";
constexpr const char* creatorText = "GLIMMERPAD";
constexpr const char* notesKeyword = "GNOTES";

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

/// For each picture of an annotation the first one with the same bytes, which is decoded for all of them: copies of an
/// annotation share their picture, in memory as here.
std::vector<size_t> firstsOf(const std::vector<TChunkbBPn>& pictures) {
    std::map<std::string_view, size_t> seen;
    std::vector<size_t> firsts = {0};
    for (size_t i = 1; i < pictures.size(); ++i) {
        const TMemoryStream& bytes = pictures[i].stream();
        const std::string_view key(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        firsts.push_back(seen.try_emplace(key, i).first->second);
    }
    return firsts;
}

/// Whether the background is as large as the visible picture and the others keep within their bound, by what their
/// headers say: nothing is decoded to find out.
bool sizesAllowed(const Found& found, const std::vector<size_t>& firsts, Size visible, int64_t most) {
    if (found.pictures[0].size() != visible) return false;
    int64_t pixels = 0;
    for (size_t i = 1; i < found.pictures.size(); ++i) {
        if (firsts[i] != i) continue;
        const std::optional<Size> size = found.pictures[i].size();
        if (!size) return false;
        pixels += int64_t{size->width} * size->height;
    }
    return pixels <= most;
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
std::optional<EditablePicture> assemble(std::vector<PngChunk>& chunks, Size visible, int64_t mostDrawn) {
    std::optional<Found> found = sortChunks(chunks);
    if (!found) return std::nullopt;
    const std::vector<size_t> firsts = firstsOf(found->pictures);
    if (!sizesAllowed(*found, firsts, visible, mostDrawn)) return std::nullopt;
    std::optional<std::vector<AnnotationRecord>> records = decodeAll(found->annotations);
    if (!records) return std::nullopt;
    size_t drawings = 0;
    for (const AnnotationRecord& record : *records) drawings += record.hasDrawing ? 1 : 0;
    if (found->pictures.size() != 1 + drawings) return std::nullopt;

    EditablePicture picture;
    size_t next = 1;
    std::vector<std::shared_ptr<const TBitmap>> decoded(firsts.size());
    for (AnnotationRecord& record : *records) {
        if (record.hasDrawing) {
            std::shared_ptr<const TBitmap>& shared = decoded[firsts[next]];
            if (shared == nullptr) {
                Result<TBitmap> drawing = found->pictures[next].bitmap();
                if (!drawing) return std::nullopt;
                shared = std::make_shared<const TBitmap>(drawing.take());
            }
            record.descriptor.drawing = shared;
            found->pictures[next++].load({});  // frees it
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

// --- writing

/// The chunks of the pictures: the background, then those of the annotations, each encoded once however many share it.
Status addPictures(std::vector<PngChunk>& chunks, const TBitmap& background,
                   const std::vector<std::shared_ptr<const TBitmap>>& drawings, int64_t mostDrawn,
                   const Progress& progress) {
    std::map<const TBitmap*, size_t> places;  // in `chunks`
    int64_t pixels = 0;
    for (const auto& drawing : drawings)
        if (places.try_emplace(drawing.get(), 0).second) pixels += int64_t{drawing->width()} * drawing->height();
    if (pixels > mostDrawn)
        return Failure{"The pictures of the annotations are together too large to be saved for editing (" +
                       std::to_string(pixels) + " pixels, at most " + std::to_string(mostDrawn) + ")."};
    const size_t all = places.size() + 2;  // the background and the visible picture, too
    size_t done = 0;
    const auto add = [&](const TBitmap* picture) -> Status {
        const Result<TChunkbBPn> chunk = TChunkbBPn::fromBitmap(picture, partOf(progress, done++, all));
        if (!chunk) return chunk.failure();
        chunks.push_back(chunk->save());
        return {};
    };
    if (Status added = add(&background); !added) return added;
    for (const auto& drawing : drawings) {
        size_t& place = places[drawing.get()];
        if (place != 0) {
            chunks.push_back(PngChunk(chunks[place]));
            continue;
        }
        place = chunks.size();
        if (Status added = add(drawing.get()); !added) return added;
    }
    return {};
}

}  // namespace

Status writeEditablePng(const TBitmap& flattened, const EditableParts& parts, bool embedNativeInfo,
                        const ByteSink& sink, const Progress& progress, const EditableLimits& limits) {
    if (!embedNativeInfo) return writePng(flattened, {}, sink, progress, limits.png);
    PngExtras extras;
    extras.texts = {{"VERSION", versionText}, {"CREATOR", creatorText}, {notesKeyword, parts.notes}};
    extras.chunks.push_back(TChunkbBIn::fromRectangle(parts.area).save());
    std::vector<std::shared_ptr<const TBitmap>> drawings;
    for (const TBBShape& shape : parts.shapes) {
        TShapeDescriptor annotation = shape.describe();
        clampDescriptor(annotation);
        extras.chunks.push_back(TChunkbBIn::fromAnnotation(&annotation).save());
        if (annotation.drawing != nullptr) drawings.push_back(annotation.drawing);
    }
    if (Status added = addPictures(extras.chunks, parts.background, drawings, limits.drawingPixels, progress); !added)
        return added;
    const size_t all = std::set<std::shared_ptr<const TBitmap>>(drawings.begin(), drawings.end()).size() + 2;
    return writePng(flattened, extras, sink, partOf(progress, all - 1, all), limits.png);
}

Result<std::vector<uint8_t>> encodeEditablePng(const TBitmap& flattened, const EditableParts& parts,
                                               bool embedNativeInfo, const Progress& progress,
                                               const EditableLimits& limits) {
    std::vector<uint8_t> file;
    const ByteSink append = [&file](std::span<const uint8_t> data) {
        file.insert(file.end(), data.begin(), data.end());
        return Status();
    };
    const Status status = writeEditablePng(flattened, parts, embedNativeInfo, append, progress, limits);
    if (!status) return status.failure();
    return file;
}

Result<OpenedPicture> readEditablePng(std::span<const uint8_t> file, const EditableLimits& limits) {
    Result<PngPicture> png = readPng(file, limits.png);
    if (!png) return png.failure();
    OpenedPicture opened;
    try {
        if (!png->chunksRefused) {
            if (std::optional<EditablePicture> parts =
                    assemble(png->extras.chunks, png->bitmap.size(), limits.drawingPixels)) {
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
