#include "host/program/options_services.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "common/clock.h"
#include "common/files.h"
#include "common/library_module.h"
#include "editor/labels/rich_text_painter.h"
#include "host/program/hot_keys.h"
#include "host/program/print_screen.h"
#include "imaging/scaling.h"
#include "output/picture/watermark.h"

namespace glimmer {

namespace {

constexpr int32_t sampleWidth = 480;  // pixels, of a small picture

/// A page of grey lines under a blue heading, as pages look from afar.
void drawSamplePage(TBitmap& picture) {
    const int32_t unit = std::max(picture.height() / 16, 4);
    picture.fill(picture.bounds(), rgb(255, 255, 255));
    picture.fill({0, 0, picture.width(), 2 * unit}, rgb(70, 110, 170));
    for (int32_t y = 3 * unit; y + unit / 2 < picture.height(); y += unit) {
        const int32_t right = picture.width() - unit * (1 + y / unit % 5);
        picture.fill({unit, y, right, y + unit / 2}, rgb(205, 208, 214));
    }
}

}  // namespace

OptionsServices optionsServices(const HotKeys* hotKeys) {
    OptionsServices services;
    const std::string program = libraryFolder() + "glimmerpad.exe";
    std::error_code error;
    if (std::filesystem::is_regular_file(pathFromUtf8(program), error)) services.program = program;
    if (hotKeys != nullptr) {
        services.hotKeyTrouble = [hotKeys](std::string_view option, int32_t hotKey) {
            return hotKeys->trouble(option, hotKey);
        };
        services.keptBySystem = [](int32_t hotKey) { return isPlainPrintScreen(hotKey) && systemKeepsPrintScreen(); };
        services.openKeptSetting = openPrintScreenSetting;
    }
    services.watermarkPreview = [painter = std::make_shared<RichTextPainter>()](const Options& options,
                                                                                Size size) -> Result<TBitmap> {
        // Drawn on a page and shown smaller, so that the watermark has the size that it has on a picture.
        const int32_t width = std::max(size.width, sampleWidth);
        const int32_t height = std::max(width * size.height / std::max(size.width, 1), 1);
        Result<TBitmap> picture = TBitmap::create(width, height, PixelFormat::Bgr24);
        if (!picture) return picture;
        drawSamplePage(*picture);
        const Status drawn =
            applyWatermark(*picture, options, "https://example.org/page", "Sample page", systemClock(), *painter);
        if (!drawn) return drawn.failure();
        return resized(*picture, std::max(size.width, 1), std::max(size.height, 1));
    };
    return services;
}

}  // namespace glimmer
