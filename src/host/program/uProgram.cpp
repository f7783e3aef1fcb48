#include "host/program/uProgram.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <optional>
#include <utility>

#include "capture/memory_guard.h"
#include "capture/mouse_cursor.h"
#include "capture/own_capture.h"
#include "capture/screen_area.h"
#include "capture/stamps.h"
#include "common/debug_channel.h"
#include "common/files.h"
#include "common/host_kind.h"
#include "common/shell_start.h"
#include "common/text.h"
#include "common/vendor.h"
#include "editor/annotations/shapes_list.h"
#include "editor/document/document.h"
#include "host/program/options_services.h"
#include "host/program/uMForm.h"
#include "imaging/clipboard.h"
#include "imaging/png_codec.h"
#include "imaging/scaling.h"
#include "main_window/uMainEditor.h"
#include "output/places/output_folders.h"
#include "output/uSaver.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

std::unique_ptr<TProgram> pProgram;

namespace {

uint64_t availableMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    // Without an answer the capture is tried; the probe comes after this.
    return GlobalMemoryStatusEx(&status) != FALSE ? status.ullAvailPhys : UINT64_MAX;
}

bool probeBitmap(Size size) { return TBitmap::create(size.width, size.height, PixelFormat::Bgra32).ok(); }

/// What a host would do with a request, in the standalone program. It has no resume command, no page to scroll and
/// no capture keys of its own, so one request is left.
void standaloneNotify(const std::string& name, const std::string& value) {
    if (name == "openURL") shellStart().open(value, {});
}

}  // namespace

/// UTF-16 units of an address or title that stay with a capture: a page may have put a whole picture into its address.
constexpr size_t longestPageText = 8192;

/// A capture while it is being taken.
struct TProgram::Arrival {
    CaptureInfo info;
    TBitmap picture;  ///< empty: none was given
};

TProgram::TProgram(std::string addonVersion, ProgramSeams seams)
    : addonVersion_(std::move(addonVersion)), seams_(std::move(seams)), saver_(std::make_unique<TSaver>()) {
    if (!seams_.availableMemory) seams_.availableMemory = glimmer::availableMemory;
    if (!seams_.probeBitmap) seams_.probeBitmap = glimmer::probeBitmap;
}

TProgram::~TProgram() {
    if (isStandalone()) setNotifyHandler(nullptr);
}

bool TProgram::initialize() {
    if (isStandalone()) setNotifyHandler(standaloneNotify);
    return true;
}

void TProgram::closeWindows() {
    if (pMainEditor == nullptr) return;
    pMainEditor->Hide();
    pMainEditor->Close(true);
    pMainEditor = nullptr;
}

void TProgram::prepareForSessionEnd() noexcept {
    using Clock = std::chrono::steady_clock;
    // The system asks each top-level window, and gives the program five seconds for all of them together.
    constexpr std::chrono::milliseconds time{2000};
    constexpr std::chrono::seconds longestRound{10};
    static std::optional<Clock::time_point> begun;
    const Clock::time_point now = Clock::now();
    if (!begun || now - *begun > longestRound) begun = now;
    const auto spent = std::chrono::duration_cast<std::chrono::milliseconds>(now - *begun);
    try {
        if (pMainEditor != nullptr) pMainEditor->prepareForSessionEnd(std::max(time - spent, {}));
    } catch (...) {
        // A message would hold the end of the session up.
        OutputDebugStringW(L"glimmerpad: not everything could be kept at the end of the session");
    }
}

void TProgram::prepareMainEditor() {
    if (pMainEditor != nullptr) return;
    pMainEditor = new TMainEditor();
    pMainEditor->setCommands({{},
                              [this] { showOptions(); },
                              [this] {
                                  hidden_ = !isStandalone() && resumeAvailable();
                                  tellResumeState();
                                  if (MForm != nullptr) MForm->editorHidden();
                              },
                              [this](const std::string& url) { openPage(url); }});
    // A picture that is taken while the window still fades would have it.
    pMainEditor->Bind(wxEVT_SHOW, [](wxShowEvent& event) {
        if (!event.IsShown()) expectFading();
        event.Skip();
    });
    pMainEditor->Bind(wxEVT_ICONIZE, [](wxIconizeEvent& event) {
        if (event.IsIconized()) expectFading();
        event.Skip();
    });
    // The standalone program does it at its own start.
    if (!isStandalone()) pMainEditor->CallAfter([] { cleanUpWorkingFolder(); });
}

void TProgram::offerRecovered() {
    // The window is only made when there may be something to show in it.
    const auto holdsSomething = [](const std::filesystem::path& folder) {
        std::error_code error;
        return std::filesystem::exists(folder, error) && !std::filesystem::is_empty(folder, error) && !error;
    };
    if (!holdsSomething(recoveryFolder()) && !holdsSomething(formerRecoveryFolder())) return;
    prepareMainEditor();
    pMainEditor->offerRecovered(false);
}

void TProgram::HandleCapture(const std::string& url, const std::string& title, const std::string& tag,
                             std::optional<std::span<const uint8_t>> pngData, std::optional<TBitmap> bitmap,
                             uint32_t action, int32_t width, int32_t height) {
    (void)tag;  // its content has no meaning
    if (!beginCapture()) return;
    const std::string kept = firstUnits(title, longestPageText);
    Arrival arrival{{firstUnits(url, longestPageText), kept, kept.empty() ? "Untitled" : kept, {}, std::time(nullptr)},
                    {}};
    debugRemark("capture for action " + std::to_string(action));
    debugDetail(url);
    if (!pngData && !bitmap) emptyCapture_ = true;
    Status received = receive(arrival, pngData, std::move(bitmap), {width, height});
    const auto chosen = static_cast<CaptureAction>(action);
    if (!received) {
        showError(received.message());
    } else if (CaptureDocument* document = createEditor(arrival)) {
        emptyCapture_ = false;
        runAction(*document, chosen);
    }
    followUp(chosen);
    tellResumeState();
}

void TProgram::refusePicture(const std::string& why, uint32_t action) {
    if (!beginCapture()) return;
    emptyCapture_ = true;
    showError(why);
    followUp(static_cast<CaptureAction>(action));
    tellResumeState();
}

/// Forgets the outcome of the capture before. False when this one is to be ignored.
bool TProgram::beginCapture() {
    if (std::exchange(skipNext_, false)) return false;
    encoded_ = nullptr;
    encodedText_.clear();
    encodedImage_.clear();
    savedPath_.clear();
    return true;
}

/// Decodes and fits the picture. A picture that cannot be used fails; none at all does not.
Status TProgram::receive(Arrival& arrival, std::optional<std::span<const uint8_t>> pngData,
                         std::optional<TBitmap> bitmap, Size size) {
    if (pngData) {
        Result<PngPicture> decoded = readPng(*pngData);
        if (!decoded) return decoded.failure();
        arrival.picture = std::move(decoded->bitmap);
    } else if (bitmap) {
        arrival.picture = std::move(*bitmap);
    }
    if (arrival.picture.empty() || size.width <= 0 || size.height <= 0 || arrival.picture.size() == size) return {};
    Result<TBitmap> fitted = resized(arrival.picture, size.width, size.height);
    arrival.picture = TBitmap();
    if (!fitted) return fitted.failure();
    arrival.picture = fitted.take();
    return {};
}

CaptureDocument* TProgram::createEditor(Arrival& arrival) {
    ++captureCount_;
    if (const std::optional<std::string> low = lowMemoryWarning(seams_.availableMemory())) {
        warnInFront(*low);
        warnInFront(captureImpossibleText());
        refuse();
        return nullptr;
    }

    const Rect area = captureArea(OptionsHolder().number("spnSelectedCaptureSource"));
    const Size screen{wholeScreen().width(), wholeScreen().height()};
    const bool empty = arrival.picture.empty();
    std::optional<MouseCursor> cursor;
    const Size probe = empty ? Size{area.width(), area.height()} : probeSize(arrival.picture.size(), screen);
    if (!seams_.probeBitmap(probe)) {
        refuseEditor(editorWarning());
        return nullptr;
    }

    if (empty) {
        const bool fromScreen = OptionsHolder().on("chkStartFromScreen");
        const auto takeScreen = [&area, &cursor] {
            if (OptionsHolder().on("chkAddMouseCursor")) cursor = visibleMouseCursor();
            return grabScreen(area, !OptionsHolder().on("chkDontGrabOverlays"));
        };
        Result<TBitmap> picture = fromScreen ? takeWithoutOwnWindows(takeScreen)
                                             : TBitmap::create(area.width(), area.height(), PixelFormat::Bgra32);
        if (picture && fromScreen) announceCapture(area);
        if (picture && !fromScreen) picture->fill(picture->bounds(), rgb(255, 255, 255));
        if (!picture) {
            refuseEditor(fromScreen ? picture.message() : editorWarning());
            return nullptr;
        }
        arrival.picture = picture.take();
    }
    const Options& options = OptionsHolder();
    TShapesList stamps = captureStamps(
        arrival.info.url, arrival.info.title,
        {options.on("chkAddURL"), options.on("chkAddTitle"), options.text("edtFontName")}, saver_->textPainter());
    if (cursor) {
        const Point at{cursor->at.x - area.left, cursor->at.y - area.top};
        TBBShape shape = pictureAnnotation({}, std::move(cursor->picture), at);
        shape.number.number = stamps.nextNumber();
        if (!shape.bounds().intersected(arrival.picture.bounds()).empty()) stamps.add(std::move(shape));
    }
    Result<std::unique_ptr<CaptureDocument>> document =
        CaptureDocument::create(std::move(arrival.picture), std::move(arrival.info), std::move(stamps));
    if (!document) {
        refuseEditor(editorWarning());
        return nullptr;
    }
    prepareMainEditor();
    return &pMainEditor->addEditor(document.take());
}

std::string TProgram::editorWarning() { return "There is not enough memory to open this screenshot in the editor."; }

void TProgram::warnInFront(const std::string& text) {
    if (pMainEditor != nullptr) pMainEditor->bringForward();
    showWarning(text);
}

/// The warning first: the window that comes forward is for what is still open.
void TProgram::refuseEditor(const std::string& text) {
    showWarning(text);
    if (pMainEditor != nullptr) pMainEditor->bringForward();
    refuse();
}

void TProgram::refuse() {
    ++refusedCount_;
    debugRemark("refused, number " + std::to_string(refusedCount_));
}

void TProgram::runAction(CaptureDocument& document, CaptureAction action) {
    switch (action) {
        case CaptureAction::Edit:
            if (!isStandalone()) offerIntegration();
            if (!hidden_ && pMainEditor->displayState() != DisplayState::Held) {
                pMainEditor->setDisplayState(DisplayState::Shown);
                pMainEditor->applyDisplayState();
                if (!isStandalone()) pMainEditor->offerRecovered(true);
            }
            break;
        case CaptureAction::Save:
        case CaptureAction::SaveAutomatically: {
            const SaveMode mode = action == CaptureAction::Save ? SaveMode::Interactive : SaveMode::Automatic;
            if (const auto path = saver_->savePicture(document, mode)) savedPath_ = utf8FromPath(*path);
            break;
        }
        case CaptureAction::Copy:
            pMainEditor->click("btnCopy");
            break;
        case CaptureAction::Mail:
            pMainEditor->click("btnMail");
            break;
        case CaptureAction::ExternalViewer:
            pMainEditor->click("btnExternalViewer");
            break;
        case CaptureAction::Upload:
            pMainEditor->click("btnUpload");
            break;
        case CaptureAction::Print:
            pMainEditor->click("btnPrint");
            break;
        case CaptureAction::EncodeText:
        case CaptureAction::EncodeImage:
            encode(document, action);
            break;
        case CaptureAction::Load:
        default:
            break;
    }
}

void TProgram::encode(CaptureDocument& document, CaptureAction action) {
    Result<std::vector<uint8_t>> png = saver_->encode(document, PictureFormat::Png);
    if (!png) {
        showError(png.message());
        return;
    }
    encoded_ = &document;
    encodedRevision_ = document.revision();
    if (action == CaptureAction::EncodeText) {
        encodedText_ = base64Encode(*png);
    } else {
        encodedImage_ = png.take();
    }
}

void TProgram::encodeAgain() {
    if (encoded_ == nullptr || pMainEditor == nullptr) return;
    for (CaptureDocument* document : pMainEditor->allEditors()) {
        if (document != encoded_ || document->revision() == encodedRevision_) continue;
        encode(*document, encodedText_.empty() ? CaptureAction::EncodeImage : CaptureAction::EncodeText);
        return;
    }
}

void TProgram::followUp(CaptureAction action) {
    if (pMainEditor == nullptr) return;
    const bool edit = action == CaptureAction::Edit;
    if (edit && hidden_ && pMainEditor->displayState() == DisplayState::Away) {
        pMainEditor->setDisplayState(DisplayState::Shown);
        pMainEditor->applyDisplayState();
        hidden_ = false;
    }
    const bool mayShow = !hidden_ && !isStandalone();
    if (pMainEditor->displayState() == DisplayState::Held || (edit && !mayShow)) return;
    if (mayShow) {
        pMainEditor->showRoutine();
    } else {
        pMainEditor->hiddenRoutine();
    }
}

void TProgram::offerIntegration() {
    Options& options = OptionsHolder();
    if (!options.on("chkFirstPromotionIEIntegration")) return;
    options.setOn("chkFirstPromotionIEIntegration", false);
    saveOptions();
    const Message question{"Do you want Vistrane to be available in Internet Explorer?", "Vistrane Integration",
                           MessageIcon::Question, MessageButtons::YesNo, MessageAnswer::Yes};
    if (showMessage(question) == MessageAnswer::Yes) integrateIntoIE();
}

void TProgram::integrateIntoIE() { openPage(std::string(vendorSite) + "/internet-explorer.htm"); }

bool TProgram::resumeAvailable() const { return pMainEditor != nullptr && pMainEditor->editorCount() > 0; }

void TProgram::resumeEditing() {
    if (!resumeAvailable()) return;
    hidden_ = false;
    pMainEditor->showRoutine();
}

void TProgram::tellResumeState() const { notifyHost("enableResumeMenu", resumeAvailable() ? "enable" : "disable"); }

void TProgram::showOptions() {
    static bool open = false;
    if (open) return;  // the menu of the icon stays in reach while the dialog is up
    open = true;
    // The host keeps its own capture keys still while they are being set here, and so do we.
    notifyHost("setupMode", "true");
    if (MForm != nullptr) MForm->suspendHotKeys(true);
    showOptionsDialog(pMainEditor != nullptr && pMainEditor->IsShown() ? pMainEditor : nullptr, optionsServices());
    if (MForm != nullptr) MForm->suspendHotKeys(false);
    notifyHost("setupMode", "false");
    open = false;
}

bool TProgram::openFile() {
    prepareMainEditor();
    const size_t before = pMainEditor->editorCount();
    pMainEditor->btnLoadProjectClick();
    // The dialog may have outlasted the window.
    if (pMainEditor == nullptr || pMainEditor->editorCount() <= before) return false;
    tellResumeState();
    restoreApplication();
    return true;
}

bool TProgram::openFileInEditor(const std::string& path) {
    prepareMainEditor();
    if (!pMainEditor->openFile(path)) return false;
    restoreApplication();
    tellResumeState();
    return true;
}

bool TProgram::openFromClipboard() {
    Result<TBitmap> picture = pictureFromClipboard();
    if (!picture) {
        showError(picture.message());
        return false;
    }
    const int32_t refusedBefore = refusedCount_;
    HandleCapture({}, "Clipboard", {}, std::nullopt, picture.take(), static_cast<uint32_t>(CaptureAction::Edit), 0, 0);
    return refusedCount_ == refusedBefore;
}

void TProgram::processInfo(const std::string& text) { notifyHost("getInfo", text); }

bool TProgram::storeEncodedContent(const std::string& base64Text) {
    const std::optional<std::vector<uint8_t>> data = base64Decode(base64Text);
    if (!data || data->empty() || !readPng(*data)) return false;
    const int32_t refusedBefore = refusedCount_;
    HandleCapture({}, {}, {}, *data, std::nullopt, static_cast<uint32_t>(CaptureAction::Load), 0, 0);
    return refusedCount_ == refusedBefore;
}

void TProgram::openPage(const std::string& url) {
    if (!isStandalone() && pMainEditor != nullptr && pMainEditor->IsShown()) offerHiding();
    notifyHost("openURL", url);
}

void TProgram::offerHiding() {
    const Message question{
        "The page will be opened in the browser, which the editor may cover.\nWould you like to hide "
        "the editor? Its captures stay open, and the browser brings it back.",
        "Hiding Vistrane", MessageIcon::Question, MessageButtons::YesNo, MessageAnswer::Yes};
    if (showRemembered("cmbHideBeforeNavigation", question) != MessageAnswer::Yes || pMainEditor == nullptr) return;
    hidden_ = true;
    pMainEditor->setDisplayState(DisplayState::Away);
    pMainEditor->applyDisplayState();
    tellResumeState();
}

void TProgram::restoreApplication() {
    hidden_ = false;
    prepareMainEditor();
    pMainEditor->setDisplayState(DisplayState::Shown);
    pMainEditor->applyDisplayState();
}

}  // namespace glimmer
