#pragma once

// What the program that gets killed and the test that reads its remains must agree on.

#include <cstdint>
#include <memory>
#include <random>

#include "editor/commands/add_annotation.h"
#include "editor/commands/change_annotation.h"
#include "editor/commands/crop_picture.h"
#include "editor/commands/draw_operation.h"
#include "editor/document/document.h"
#include "editor/recovery/recovery_manifest.h"

namespace glimmer::test {

/// A number for the whole visible state of a capture.
inline uint64_t stateHash(const CaptureDocument& capture) {
    uint64_t hash = checksumOf(capture.background().bytes());
    const auto mix = [&](uint64_t value) { hash = (hash ^ value) * 0x100000001B3ULL; };
    mix(static_cast<uint64_t>(capture.size().width) << 32U | static_cast<uint64_t>(capture.size().height));
    for (const TBBShape& shape : capture.annotations()) {
        mix(shape.id());
        mix(static_cast<uint64_t>(shape.shape.rectangle.left * 65536 + shape.shape.rectangle.top));
        mix(checksumOf({reinterpret_cast<const uint8_t*>(shape.text.text.data()), shape.text.text.size()}));
        if (shape.shape.drawing != nullptr) mix(checksumOf(shape.shape.drawing->bytes()));
    }
    return hash;
}

inline std::unique_ptr<CaptureDocument> victimCapture() {
    TBitmap picture = TBitmap::create(700, 1500, PixelFormat::Bgra32).take();
    std::mt19937 random(5);
    for (int32_t y = 0; y < picture.height(); ++y)
        for (int32_t x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, (y / 20) % 2 == 0 ? 0xFFFFFF : static_cast<Colour>(random() & 0x3F3F3F));
    return CaptureDocument::create(std::move(picture), {"http://a.b/", "Tïtle", "Näme", "notes", 12345}).take();
}

inline std::shared_ptr<const TBitmap> smallDrawing(uint32_t seed) {
    TBitmap ink = TBitmap::create(40, 30, PixelFormat::Bgra32).take();
    for (uint8_t& byte : ink.bytes()) byte = static_cast<uint8_t>(seed = seed * 1664525U + 1013904223U);
    return std::make_shared<const TBitmap>(std::move(ink));
}

/// One change of the kinds that a user makes.
inline void changeSomething(CaptureDocument& capture, std::mt19937& random) {
    const auto between = [&](int32_t low, int32_t high) {
        return low + static_cast<int32_t>(random() % static_cast<uint32_t>(high - low + 1));
    };
    const Size size = capture.size();
    const int32_t choice = between(0, 9);
    if (choice < 3) {
        TPixelOperation fill;
        fill.rectangle = {between(0, 300), between(0, 900), between(301, 600), between(901, 1200)};
        fill.rectangle.right = std::min(fill.rectangle.right, size.width - 1);
        fill.rectangle.bottom = std::min(fill.rectangle.bottom, size.height - 1);
        fill.colour = static_cast<Colour>(random() & 0xFFFFFF);
        static_cast<void>(capture.run(std::make_unique<DrawOperation>(std::move(fill))));
    } else if (choice < 6 || capture.annotations().empty()) {
        TBBShape shape(predefinedStyles()[0], {between(0, 400), between(0, 400), 500, 500});
        shape.text.text = std::to_string(random());
        if (choice == 5) {
            shape.shape.settings.kind = ShapeKind::Drawing;
            shape.shape.drawing = smallDrawing(static_cast<uint32_t>(random()));
        }
        static_cast<void>(capture.run(std::make_unique<AddAnnotation>(std::move(shape))));
    } else if (choice < 8) {
        TBBShape shape = capture.annotations()[random() % capture.annotations().size()];
        shape.moveBy(between(-9, 9), between(-9, 9));
        static_cast<void>(capture.run(std::make_unique<ChangeAnnotation>(std::move(shape))));
    } else if (choice == 8) {
        static_cast<void>(capture.undo());
    } else if (size.width > 650) {
        static_cast<void>(capture.run(std::make_unique<CropPicture>(Rect{1, 1, size.width, size.height})));
    }
}

}  // namespace glimmer::test
