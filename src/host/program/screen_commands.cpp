#include "host/program/screen_commands.h"

#include <wx/app.h>
#include <wx/menu.h>
#include <wx/window.h>
// After the toolkit's headers, which do not stand its names.
#include <windows.h>

#include <utility>

#include "capture/overlay/screen_capture.h"
#include "capture/own_capture.h"
#include "common/boundary.h"
#include "common/files.h"
#include "host/program/host_state.h"
#include "host/program/hot_keys.h"
#include "host/program/uProgram.h"
#include "imaging/picture_file.h"
#include "settings/hot_key.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

/// Nothing more is to happen with the picture.
constexpr int32_t nothingFollows = 6;

/// As the name's ending says, PNG without one.
Status writePicture(const TBitmap& picture, const std::string& file) {
    const Result<std::vector<uint8_t>> data = encodePicture(picture, formatOfName(file).value_or(PictureFormat::Png));
    if (!data) return data.failure();
    return writeFile(pathFromUtf8(file), *data);
}

/// For the file, in which there are no objects.
void drawPointer(TBitmap& picture, const MouseCursor& pointer) {
    for (int32_t y = 0; y < pointer.picture.height(); ++y) {
        for (int32_t x = 0; x < pointer.picture.width(); ++x) {
            const Point to{pointer.at.x + x, pointer.at.y + y};
            if (!picture.bounds().contains(to)) continue;
            const uint32_t alpha = pointer.picture.alpha(x, y);
            const Colour above = pointer.picture.pixel(x, y);
            const Colour below = picture.pixel(to.x, to.y);
            const auto mix = [alpha](uint32_t a, uint32_t b) { return (a * alpha + b * (255 - alpha) + 127) / 255; };
            picture.setPixel(to.x, to.y,
                             rgb(mix(redOf(above), redOf(below)), mix(greenOf(above), greenOf(below)),
                                 mix(blueOf(above), blueOf(below))));
        }
    }
}

Status writeCapture(const TakenCapture& taken, const std::string& file) {
    Result<TBitmap> picture = taken.screen.picture.clone();
    if (!picture) return picture.failure();
    if (taken.screen.pointer) drawPointer(*picture, *taken.screen.pointer);
    return writePicture(*picture, file);
}

/// The menu is still fading when its command runs.
void runFromMenu(const CaptureRequest& request) {
    expectFading();
    if (wxTheApp == nullptr) return;
    wxTheApp->CallAfter([request] { guarded([&request] { runCapture(request); }); });
}

/// What a menu shows at its right side.
std::string keyColumn(int32_t key) {
    std::string text;
    if (hotKeyCode(key) == 0) return text;
    text += '\t';
    text += hotKeyText(key);
    return text;
}

TrayItem item(std::string caption, const CaptureRequest& request, bool apart = false) {
    return {std::move(caption), [request] { runFromMenu(request); }, apart};
}

}  // namespace

CaptureOutcome runCapture(const CaptureRequest& request) {
    if (!ensureProgram()) return CaptureOutcome::Failed;
    Result<std::optional<TakenCapture>> taken = takeCapture(request);
    if (!taken) {
        showError(taken.message());
        return CaptureOutcome::Failed;
    }
    if (!*taken) return CaptureOutcome::Left;
    TakenCapture& capture = **taken;
    if (!request.file.empty()) {
        if (const Status written = writeCapture(capture, request.file); !written) {
            showError(written.message());
            return CaptureOutcome::Failed;
        }
    }
    const CaptureCode code = splitCaptureCode(request.action);
    if (!request.file.empty() && code.action == static_cast<CaptureAction>(nothingFollows)) return CaptureOutcome::Done;
    if (!pProgram) return CaptureOutcome::Failed;  // ended while the area was chosen
    Delivery delivery;
    delivery.title = std::move(capture.title);
    delivery.picture = std::move(capture.screen.picture);
    delivery.pointer = std::move(capture.screen.pointer);
    delivery.notes = capture.note;
    delivery.action = code.action;
    const int32_t refused = pProgram->refusedCount();
    pProgram->HandleCapture(std::move(delivery));
    if (pProgram && pProgram->refusedCount() != refused) return CaptureOutcome::Failed;
    if (!capture.note.empty()) showInformation(capture.note);
    return CaptureOutcome::Done;
}

std::vector<TrayItem> captureItems() {
    constexpr int32_t aMoment = 3;  // seconds
    constexpr int32_t aWhile = 10;
    std::vector<TrayItem> items{
        item("&Region or Window..." + keyColumn(OptionsHolder().number("hotCaptureRegion")), {CaptureKind::Region}),
        item("&Window in Front" + keyColumn(OptionsHolder().number("hotCaptureTopWindow")), {CaptureKind::Window}),
        item("&Inside of the Window in Front", {CaptureKind::Client}),
        item("&Monitor", {CaptureKind::Monitor}),
        item("Whole &Desktop", {CaptureKind::Desktop}),
        item("&Last Area Again", {CaptureKind::Last}),
        item("Region or Window in &3 Seconds", {CaptureKind::Region, aMoment}, true),
        item("Region or Window in 1&0 Seconds", {CaptureKind::Region, aWhile}),
        item("Whole Desktop in 3 &Seconds", {CaptureKind::Desktop, aMoment}),
    };
    bool apart = true;
    for (const CapturePreset& preset : readPresets(OptionsHolder().text("edtCapturePresets"))) {
        items.push_back(item(presetCaption(preset.request) + keyColumn(preset.hotKey), preset.request,
                             std::exchange(apart, false)));
    }
    return items;
}

void showCaptureMenu(wxWindow& button) {
    wxMenu menu;
    appendItems(menu, captureItems());
    button.PopupMenu(&menu, 0, button.GetSize().y);
}

PresetKeys::PresetKeys(void* window, std::function<void(const std::string&)> report)
    : window_(window), report_(std::move(report)), listener_([this] {
          if (readPresets(OptionsHolder().text("edtCapturePresets")) == presets_) return;
          releaseAll();
          registerAll();
          reportTaken();
      }) {
    registerAll();
}

PresetKeys::~PresetKeys() { releaseAll(); }

void PresetKeys::registerAll() {
    presets_ = readPresets(OptionsHolder().text("edtCapturePresets"));
    taken_.clear();
    for (size_t i = 0; i < presets_.size(); ++i) {
        const int32_t key = presets_[i].hotKey;
        if (hotKeyCode(key) == 0 || !mayBeGlobal(key)) continue;
        if (RegisterHotKey(static_cast<HWND>(window_), firstId + static_cast<int>(i), hotKeyModifiers(key),
                           hotKeyCode(key)) == FALSE)
            taken_ += '\n' + hotKeyText(key) + ": " + presetCaption(presets_[i].request);
    }
}

void PresetKeys::releaseAll() {
    for (size_t i = 0; i < presets_.size(); ++i)
        UnregisterHotKey(static_cast<HWND>(window_), firstId + static_cast<int>(i));
}

void PresetKeys::reportTaken() {
    if (!taken_.empty() && report_) report_("Taken by another program:" + std::exchange(taken_, {}));
}

void PresetKeys::pressed(int id) const {
    const auto place = static_cast<size_t>(id - firstId);
    if (place < presets_.size()) runCapture(CaptureRequest(presets_[place].request));
}

}  // namespace glimmer
