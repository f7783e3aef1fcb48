#include "editor/painting/text_painter.h"

#include <algorithm>

#include "editor/annotations/uShapes.h"

namespace glimmer {

namespace {

/// What the remembered masks may take together; some hundred labels.
constexpr size_t maxKnownBytes = size_t{24} * 1024 * 1024;

/// The settings that decide over coverage, all others as they are by default.
TTextSettings withoutLooks(const TTextSettings& font) {
    TTextSettings plain;
    plain.fontName = font.fontName;
    plain.fontSize = font.fontSize;
    plain.bold = font.bold;
    plain.italic = font.italic;
    plain.underlined = font.underlined;
    plain.alignment = font.alignment;
    return plain;
}

}  // namespace

std::shared_ptr<const TextMask> TextPainter::mask(const TTextSettings& font, const std::string& text, Size area) {
    area.width = std::clamp(area.width, 0, maxSide);
    area.height = std::clamp(area.height, 0, maxSide);
    if (int64_t{area.width} * area.height > maxPixels) area.height = static_cast<int32_t>(maxPixels / area.width);
    if (area.width == 0 || area.height == 0) return std::make_shared<const TextMask>();

    const TTextSettings plain = withoutLooks(font);
    const auto at = std::find_if(known_.begin(), known_.end(),
                                 [&](const Known& k) { return k.area == area && k.text == text && k.font == plain; });
    if (at != known_.end()) {
        known_.splice(known_.begin(), known_, at);
        return known_.front().mask;
    }
    auto mask = std::make_shared<const TextMask>(render(plain, text, area));
    knownBytes_ += mask->coverage.size() + text.size();
    known_.push_front({plain, text, area, mask});
    while (knownBytes_ > maxKnownBytes && known_.size() > 1) {
        knownBytes_ -= known_.back().mask->coverage.size() + known_.back().text.size();
        known_.pop_back();
    }
    return mask;
}

void fitLabel(TBBShape& shape, TextPainter& painter) {
    TTextObject& label = shape.text;
    const Rect rect = label.rectangle.normalized();
    int32_t width = rect.width() - 2 * labelPaddingX;
    if (rect.width() == 0) {
        width = std::min(initialLabelTextWidth, painter.measure(label.settings, label.text, 0).width);
    }
    width = std::max(width, 1);
    const Size needed = painter.measure(label.settings, label.text, width);
    shape.setLabelSize(TTextObject::labelSize({width, needed.height}));
}

void fitChangedLabel(const TBBShape& before, TBBShape& after, TextPainter& painter) {
    const auto collapse = [](TBBShape& shape) {
        Rect& label = shape.text.rectangle;
        label = {label.left, label.top, label.left, label.top};
    };
    TBBShape natural = before;
    collapse(natural);
    fitLabel(natural, painter);
    if (natural.text.rectangle.width() == before.text.rectangle.width()) collapse(after);
    fitLabel(after, painter);
}

void fitLabelUnwrapped(TBBShape& shape, TextPainter& painter) {
    TTextObject& label = shape.text;
    const Size natural = painter.measure(label.settings, label.text, 0);
    const int32_t width = std::clamp(natural.width, 1, TextPainter::maxSide);
    const Size needed = painter.measure(label.settings, label.text, width);
    shape.setLabelSize(TTextObject::labelSize({width, needed.height}));
}

}  // namespace glimmer
