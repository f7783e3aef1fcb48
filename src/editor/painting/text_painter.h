#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "common/geometry.h"
#include "editor/annotations/shape_settings.h"

namespace glimmer {

class TBBShape;

/// What a label's glyphs cover: one byte a pixel, 0 not at all to 255 wholly, rows from the top.
struct TextMask {
    Size size;
    std::vector<uint8_t> coverage;  ///< size.width * size.height
};

/// The system's text: the one seam through which labels are measured and drawn. Text is plain; its font, alignment
/// and underline hold for the whole label. Implementations lay text out, wrap it at a width and answer coverage;
/// colour and blending are the painter's. Not thread-safe, like everything that paints.
class TextPainter {
public:
    TextPainter() = default;
    virtual ~TextPainter() = default;
    TextPainter(const TextPainter&) = delete;
    TextPainter& operator=(const TextPainter&) = delete;
    TextPainter(TextPainter&&) = delete;
    TextPainter& operator=(TextPainter&&) = delete;

    /// No mask is wider or higher; what lies beyond is cut off.
    static constexpr int32_t maxSide = 16384;
    static constexpr int64_t maxPixels = 16LL * 1024 * 1024;

    /// Size of the text wrapped at `width` pixels; not wrapped at all when `width` is 0 or less. An empty text is
    /// one line high. Colours and position do not matter.
    [[nodiscard]] virtual Size measure(const TTextSettings& font, const std::string& text, int32_t width) = 0;

    /// The text laid out from the top of an area of that size, aligned and wrapped in its width. The same request
    /// again is answered from memory.
    std::shared_ptr<const TextMask> mask(const TTextSettings& font, const std::string& text, Size area);

protected:
    [[nodiscard]] virtual TextMask render(const TTextSettings& font, const std::string& text, Size area) = 0;

private:
    struct Known {
        TTextSettings font;  ///< colours, fill and position set to one value, since they do not matter
        std::string text;
        Size area;
        std::shared_ptr<const TextMask> mask;
    };
    std::list<Known> known_;  ///< most recently used first
    size_t knownBytes_ = 0;
};

/// Width of the text of a label that has no size yet: longer text wraps.
constexpr int32_t initialLabelTextWidth = 240;

/// Gives a label the height that its text needs at its width; a label without a width first gets that of its text,
/// initialLabelTextWidth at most. Lays the annotation out again.
void fitLabel(TBBShape& shape, TextPainter& painter);
/// Fits the label of `after` to a text or font that was changed since `before`. A label that was just as wide as its
/// text stays so; one that was given a width keeps it and wraps.
void fitChangedLabel(const TBBShape& before, TBBShape& after, TextPainter& painter);
/// The same for a label that may be as wide as its text is: address and title stamps.
void fitLabelUnwrapped(TBBShape& shape, TextPainter& painter);

}  // namespace glimmer
