#include "editor/annotations/annotation_record.h"

#include <array>
#include <type_traits>

#include "common/assertion.h"
#include "common/bytes.h"
#include "common/text.h"

namespace glimmer {

namespace {

/// A slot that is written as 0 and not looked at.
struct Reserved {};
constexpr Reserved reserved;

/// A value of the model as the unsigned number that is stored, and back.
template <class Field>
uint32_t stored(const Field& field) {
    if constexpr (std::is_same_v<Field, Reserved>)
        return 0;
    else
        return static_cast<uint32_t>(field);
}
template <class Field>
void restore(Field& field, uint32_t value) {
    if constexpr (std::is_same_v<std::remove_const_t<Field>, Reserved>)
        return;
    else if constexpr (std::is_same_v<Field, bool>)
        field = value != 0;
    else
        field = static_cast<Field>(value);
}

// The three archives: each has b() for a byte and d() for a 32-bit value, called once for every value in the order
// in which they lie in the stream, and slot() before the first value of each slot.

class RecordWriter {
public:
    explicit RecordWriter(ByteWriter& out) : out_(out) {}
    void slot(char /*kind*/, const char* /*meaning*/) {}
    template <class Field>
    void b(const char* /*meaning*/, const Field& field) {
        out_.u8(static_cast<uint8_t>(stored(field)));
    }
    template <class Field>
    void d(const char* /*meaning*/, const Field& field) {
        out_.u32(stored(field));
    }

private:
    ByteWriter& out_;
};

class RecordReader {
public:
    explicit RecordReader(ByteReader& in) : in_(in) {}
    void slot(char /*kind*/, const char* /*meaning*/) {}
    template <class Field>
    void b(const char* /*meaning*/, Field& field) {
        restore(field, in_.u8());
    }
    template <class Field>
    void d(const char* /*meaning*/, Field& field) {
        restore(field, in_.u32());
    }

private:
    ByteReader& in_;
};

class RecordOutliner {
public:
    explicit RecordOutliner(std::vector<std::string>& rows) : rows_(rows) {}
    void slot(char kind, const char* meaning) {
        rows_.push_back(std::to_string(++slot_) + " " + kind + " " + meaning);
        inStyle_ = kind == 'S';
    }
    template <class Field>
    void b(const char* meaning, const Field& /*field*/) {
        value(meaning);
    }
    template <class Field>
    void d(const char* meaning, const Field& /*field*/) {
        value(meaning);
    }

private:
    void value(const char* meaning) {
        if (inStyle_) rows_.back() += std::string(rows_.back().ends_with(':') ? " " : ", ") + meaning;
    }
    std::vector<std::string>& rows_;
    int slot_ = 0;
    bool inStyle_ = false;
};

/// One slot of a byte, one of 32 bits.
template <class Archive, class Field>
void slotB(Archive& archive, const char* meaning, Field& field) {
    archive.slot('B', meaning);
    archive.b(meaning, field);
}
template <class Archive, class Field>
void slotD(Archive& archive, const char* meaning, Field& field) {
    archive.slot('D', meaning);
    archive.d(meaning, field);
}

/// A value of a style record and what it means.
template <class Field>
struct Named {
    const char* meaning;
    Field& field;
};
template <class Field>
Named(const char*, Field&) -> Named<Field>;

/// A style record: three bytes and five 32-bit values.
template <class Archive, class B1, class B2, class B3, class D1, class D2, class D3, class D4, class D5>
void slotS(Archive& archive, const char* meaning, Named<B1> b1, Named<B2> b2, Named<B3> b3, Named<D1> d1, Named<D2> d2,
           Named<D3> d3, Named<D4> d4, Named<D5> d5) {
    archive.slot('S', meaning);
    archive.b(b1.meaning, b1.field);
    archive.b(b2.meaning, b2.field);
    archive.b(b3.meaning, b3.field);
    archive.d(d1.meaning, d1.field);
    archive.d(d2.meaning, d2.field);
    archive.d(d3.meaning, d3.field);
    archive.d(d4.meaning, d4.field);
    archive.d(d5.meaning, d5.field);
}

/// The one description of the fixed settings. `Descriptor` is TShapeDescriptor, const when writing.
template <class Archive, class Descriptor, class Flag>
void fixedSettings(Archive& archive, Descriptor& a, Flag& hasDrawing) {
    auto& shape = a.style.shape;
    auto& text = a.style.text;
    auto& line = a.style.line;
    const Named blank = {"0", reserved};

    slotB(archive, "shape visible", shape.visible);
    slotB(archive, "text visible", text.visible);
    slotS(archive, "shape:", Named{"kind", shape.kind}, Named{"opacity", shape.opacity},
          Named{"frame width", shape.frameWidth}, Named{"left", a.shapeRect.left}, Named{"top", a.shapeRect.top},
          Named{"right", a.shapeRect.right}, Named{"bottom", a.shapeRect.bottom},
          Named{"shape colour", shape.shapeColour});
    slotB(archive, "line visible", line.visible);
    slotS(archive, "label:", Named{"alignment", text.alignment}, Named{"position", text.position},
          Named{"filled background", text.filled}, Named{"left", a.textRect.left}, Named{"top", a.textRect.top},
          Named{"right", a.textRect.right}, Named{"bottom", a.textRect.bottom}, blank);
    slotB(archive, "bold", text.bold);
    slotB(archive, "italic", text.italic);
    slotB(archive, "underlined", text.underlined);
    slotB(archive, "has a picture of its own", hasDrawing);
    slotD(archive, "shape frame colour", shape.frameColour);
    slotB(archive, "reserved", reserved);
    slotB(archive, "reserved", reserved);
    slotD(archive, "font size", text.fontSize);
    slotD(archive, "text colour", text.textColour);
    slotS(archive, "line:", Named{"front end", line.front}, Named{"back end", line.back}, Named{"width", line.width},
          Named{"line colour", line.lineColour}, Named{"line frame colour", line.frameColour}, blank, blank, blank);
    slotD(archive, "text background colour", text.backgroundColour);
    slotB(archive, "reserved", reserved);
    slotB(archive, "reserved", reserved);
    slotD(archive, "text frame colour", text.frameColour);
    slotS(archive, "reserved:", blank, blank, blank, blank, blank, blank, blank, blank);
    slotB(archive, "reserved", reserved);
    slotB(archive, "reserved", reserved);
    slotD(archive, "annotation identifier", a.id);
    slotD(archive, "reserved", reserved);
}

/// One entry of the numbering table, after which the identifiers of its members follow: the badge's position as key,
/// its visibility as flag, the step number as value.
template <class Archive, class Descriptor, class Count>
void numberingEntry(Archive& archive, Descriptor& a, Count& members) {
    archive.d("position", a.style.number.position);
    archive.b("visible", a.style.number.visible);
    for (int i = 0; i < 3; ++i) archive.b("0", reserved);
    archive.d("step number", a.number);
    archive.d("member count", members);
}

// --- strings

/// Windows' western characters 0x80 to 0x9F; the others are those of Latin-1.
constexpr std::array<char16_t, 32> westernCharacters = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178,
};

void writeString(ByteWriter& out, const std::string& text) {
    const std::u16string units = toUtf16(text);
    out.u32(static_cast<uint32_t>(units.size() * 2));
    for (const char16_t unit : units) {
        out.u8(static_cast<uint8_t>(unit & 0xFFU));
        out.u8(static_cast<uint8_t>(unit >> 8U));
    }
}

/// Nothing when it is cut short or, in UTF-16, has an odd number of bytes.
std::optional<std::string> readString(ByteReader& in, uint32_t version) {
    const std::span<const uint8_t> bytes = in.bytes(in.u32());
    if (!in.ok()) return std::nullopt;
    std::u16string units;
    if (version == recordVersionOld) {
        for (const uint8_t byte : bytes)
            units += byte >= 0x80 && byte < 0xA0 ? westernCharacters[byte - 0x80U] : static_cast<char16_t>(byte);
    } else {
        if (bytes.size() % 2 != 0) return std::nullopt;
        for (size_t i = 0; i < bytes.size(); i += 2)
            units += static_cast<char16_t>(bytes[i] | static_cast<uint32_t>(bytes[i + 1]) << 8U);
    }
    return toUtf8(units);
}

// --- the numbering table

constexpr uint32_t numberingReserved = 4;

void writeNumbering(ByteWriter& out, const TShapeDescriptor& annotation) {
    for (uint32_t i = 0; i < numberingReserved; ++i) out.u32(0);
    out.u32(1);
    RecordWriter archive(out);
    const uint32_t members = 1;
    numberingEntry(archive, annotation, members);
    out.u32(annotation.id);
}

/// The first entry counts; further ones are read over.
bool readNumbering(ByteReader& in, TShapeDescriptor& annotation) {
    for (uint32_t i = 0; i < numberingReserved; ++i) in.u32();
    const uint32_t count = in.u32();
    TShapeDescriptor other;
    RecordReader archive(in);
    for (uint32_t i = 0; i < count && in.ok(); ++i) {
        uint32_t members = 0;
        numberingEntry(archive, i == 0 ? annotation : other, members);
        // In two steps: four times a count that lies does not fit into 32 bits.
        if (members > in.left() / 4) return false;
        in.bytes(size_t{members} * 4);
    }
    return in.ok();
}

}  // namespace

std::vector<uint8_t> encodeAnnotation(const TShapeDescriptor* annotation) {
    GLIMMER_ASSERT(annotation != nullptr, "pAnnotationStruct!=NULL", "uPNGChunk");
    TShapeDescriptor inRange = *annotation;
    clampDescriptor(inRange);
    const TShapeDescriptor& source = inRange;
    ByteWriter out;
    out.u32(recordVersion);
    out.u32(recordStrings);
    for (const std::string* text : {&source.text, &source.style.text.fontName, &source.style.name})
        writeString(out, *text);
    RecordWriter archive(out);
    const bool hasDrawing = source.drawing != nullptr;
    fixedSettings(archive, source, hasDrawing);
    writeNumbering(out, source);
    return out.take();
}

std::optional<AnnotationRecord> decodeAnnotation(std::span<const uint8_t> record) {
    ByteReader in(record);
    const uint32_t version = in.u32();
    if (version != recordVersion && version != recordVersionOld) return std::nullopt;
    const uint32_t strings = in.u32();
    if (!in.ok()) return std::nullopt;
    GLIMMER_ASSERT(strings == recordStrings, "pSL->Count == 3", "uPNGChunk");
    AnnotationRecord result;
    TShapeDescriptor& annotation = result.descriptor;
    for (std::string* text : {&annotation.text, &annotation.style.text.fontName, &annotation.style.name}) {
        std::optional<std::string> string = readString(in, version);
        if (!string) return std::nullopt;
        *text = std::move(*string);
    }
    RecordReader archive(in);
    fixedSettings(archive, annotation, result.hasDrawing);
    if (!in.ok() || !readNumbering(in, annotation) || in.left() != 0) return std::nullopt;
    clampDescriptor(annotation);
    annotation.drawing = nullptr;  // clampDescriptor() gives a drawing an empty picture until it has its own
    return result;
}

std::vector<std::string> recordOutline() {
    std::vector<std::string> rows;
    RecordOutliner archive(rows);
    const TShapeDescriptor none;
    const bool hasDrawing = false;
    fixedSettings(archive, none, hasDrawing);
    return rows;
}

}  // namespace glimmer
