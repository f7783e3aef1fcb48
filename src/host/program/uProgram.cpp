#include "host/program/uProgram.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <optional>
#include <utility>

#include "capture/memory_guard.h"
#include "capture/new_document.h"
#include "capture/own_capture.h"
#include "capture/screen_area.h"
#include "capture/screen_picture.h"
#include "common/at_end.h"
#include "common/debug_channel.h"
#include "common/files.h"
#include "common/host_kind.h"
#include "common/shell_start.h"
#include "common/text.h"
#include "common/vendor.h"
#include "host/program/hot_keys.h"
#include "host/program/options_services.h"
#include "imaging/clipboard.h"
#include "imaging/png_codec.h"
#include "main_window/output_commands.h"
#include "main_window/uMainEditor.h"
#include "output/places/output_folders.h"
#include "output/spoken_saver.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

std::unique_ptr<TProgram> pProgram;

namespace {

/// What the button for new captures offers.
std::function<void(wxWindow&)> captureMenu;

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

TProgram::TProgram(std::string addonVersion, ProgramHome* home, ProgramSeams seams)
    : addonVersion_(std::move(addonVersion)),
      home_(home),
      seams_(std::move(seams)),
      saver_(std::make_unique<TSaver>()) {
    if (!seams_.availableMemory) seams_.availableMemory = glimmer::availableMemory;
    if (!seams_.probeBitmap) seams_.probeBitmap = glimmer::probeBitmap;
    if (isStandalone()) setNotifyHandler(standaloneNotify);
}

TProgram::~TProgram() {
    if (isStandalone()) setNotifyHandler(nullptr);
}

void TProgram::setCaptureMenu(std::function<void(wxWindow&)> show) { captureMenu = std::move(show); }

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

/// The window, made at first use; it is not shown.
TMainEditor& TProgram::mainEditor() {
    if (pMainEditor != nullptr) return *pMainEditor;
    pMainEditor = new TMainEditor(*saver_, recoveryFolder());
    pMainEditor->setCommands({[this] { showOptions(); },
                              [this] {
                                  hidden_ = !isStandalone() && resumeAvailable();
                                  tellResumeState();
                                  if (home_ != nullptr) home_->editorHidden();
                              },
                              [this](const std::string& url) { openPage(url); }, captureMenu});
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
    return *pMainEditor;
}

void TProgram::prepareForDelivery() {
    if (!hidden_) mainEditor();
}

void TProgram::offerRecovered() {
    // The window is only made when there may be something to show in it.
    const auto holdsSomething = [](const std::filesystem::path& folder) {
        std::error_code error;
        return std::filesystem::exists(folder, error) && !std::filesystem::is_empty(folder, error) && !error;
    };
    if (!holdsSomething(recoveryFolder()) && !holdsSomething(formerRecoveryFolder())) return;
    mainEditor().offerRecovered(false);
}

void TProgram::HandleCapture(Delivery delivery) {
    if (!beginCapture()) return;
    const CaptureAction action = delivery.action;
    debugRemark("capture for action " + std::to_string(static_cast<uint32_t>(action)));
    debugDetail(delivery.url);
    if (!delivery.png && delivery.picture.empty()) emptyCapture_ = true;
    CaptureDocument* document = nullptr;
    if (const Status received = receivePicture(delivery); !received) {
        showError(received.message());
    } else {
        document = createEditor(std::move(delivery));
    }
    if (document != nullptr) {
        emptyCapture_ = false;
        runAction(*document, action);
    }
    moveWindow(action, document != nullptr);
    tellResumeState();
}

/// Forgets the outcome of the capture before. False when this one is to be ignored.
bool TProgram::beginCapture() {
    if (std::exchange(skipNext_, false)) return false;
    encoded_ = {};
    savedPath_.clear();
    return true;
}

/// Takes a capture; whether it was not refused.
bool TProgram::accepted(Delivery delivery) {
    const int32_t before = refusedCount_;
    HandleCapture(std::move(delivery));
    return refusedCount_ == before;
}

/// The document in the main editor window, or null when the capture was refused.
CaptureDocument* TProgram::createEditor(Delivery delivery) {
    ++captureCount_;
    if (const std::optional<std::string> low = lowMemoryWarning(seams_.availableMemory())) {
        warnInFront(*low);
        warnInFront(captureImpossibleText());
        refuse();
        return nullptr;
    }
    const Rect area = chosenScreenArea();
    const bool empty = delivery.picture.empty();
    const Size screen{wholeScreen().width(), wholeScreen().height()};
    const Size probe = empty ? Size{area.width(), area.height()} : probeSize(delivery.picture.size(), screen);
    if (!seams_.probeBitmap(probe)) return refuseEditor(noRoomForEditorText());

    ScreenPicture taken;
    if (empty) {
        Result<ScreenPicture> screen = takeScreenPicture(area);
        if (!screen) return refuseEditor(screen.message());
        taken = screen.take();
    } else {
        taken.picture = std::move(delivery.picture);
        taken.pointer = std::move(delivery.pointer);
    }
    const Options& options = OptionsHolder();
    const StampOptions stamped{options.on("chkAddURL"), options.on("chkAddTitle"), options.text("edtFontName")};
    Result<std::unique_ptr<CaptureDocument>> document =
        newDocument(std::move(taken.picture), delivery.url, delivery.title, std::time(nullptr),
                    std::move(taken.pointer), stamped, saver_->textPainter(), std::move(delivery.notes));
    if (!document) return refuseEditor(noRoomForEditorText());
    return &mainEditor().session().add(document.take());
}

void TProgram::warnInFront(const std::string& text) {
    if (pMainEditor != nullptr) pMainEditor->bringForward();
    showWarning(text);
}

/// The warning first: the window that comes forward is for what is still open. Answers null.
CaptureDocument* TProgram::refuseEditor(const std::string& text) {
    showWarning(text);
    if (pMainEditor != nullptr) pMainEditor->bringForward();
    refuse();
    return nullptr;
}

void TProgram::refuse() {
    ++refusedCount_;
    debugRemark("refused, number " + std::to_string(refusedCount_));
}

void TProgram::runAction(CaptureDocument& document, CaptureAction action) {
    switch (action) {
        case CaptureAction::Edit:
            offerIntegration(IntegrationMoment::Edited);
            break;
        case CaptureAction::Save:
        case CaptureAction::SaveAutomatically: {
            const SaveMode mode = action == CaptureAction::Save ? SaveMode::Interactive : SaveMode::Automatic;
            if (const auto path = SpokenSaver(*saver_).savePicture(document, mode)) savedPath_ = utf8FromPath(*path);
            break;
        }
        case CaptureAction::Copy:
            pMainEditor->output(copyCaptures, {&document});
            break;
        case CaptureAction::Mail:
            pMainEditor->output(mailCaptures, {&document});
            break;
        case CaptureAction::ExternalViewer:
            pMainEditor->output(launchCaptures, {&document});
            break;
        case CaptureAction::Upload:
            pMainEditor->output(uploadCaptures, {&document});
            break;
        case CaptureAction::Print:
            pMainEditor->output(printCaptures, {&document});
            break;
        case CaptureAction::EncodeText:
        case CaptureAction::EncodeImage:
            if (const Status encoded = encoded_.encode(
                    *saver_, document,
                    action == CaptureAction::EncodeText ? EncodedContent::Form::Text : EncodedContent::Form::Image);
                !encoded)
                showError(encoded.message());
            break;
        case CaptureAction::Load:
        default:
            break;
    }
}

const EncodedContent& TProgram::encodedContent() {
    if (pMainEditor == nullptr) return encoded_;
    if (const Status encoded = encoded_.encodeAgain(*saver_, pMainEditor->session().all()); !encoded)
        showError(encoded.message());
    return encoded_;
}

void TProgram::moveWindow(CaptureAction action, bool made) {
    if (pMainEditor == nullptr) return;
    switch (windowMoveAfter(action, made, pMainEditor->displayState(), hidden_, isStandalone())) {
        case WindowMove::Leave:
            break;
        case WindowMove::Refresh:
            pMainEditor->hiddenRoutine();
            break;
        case WindowMove::Show: {
            const bool wasHidden = std::exchange(hidden_, false);
            pMainEditor->showRoutine();
            if (made && action == CaptureAction::Edit && !wasHidden && !isStandalone())
                pMainEditor->offerRecovered(true);
            break;
        }
    }
}

void TProgram::offerIntegration(IntegrationMoment moment) {
    Options& options = OptionsHolder();
    if (!offersIntegration(hostKind(), moment) || !options.on("chkFirstPromotionIEIntegration")) return;
    options.setOn("chkFirstPromotionIEIntegration", false);
    saveOptions();
    const Message question{"Do you want Vistrane to be available in Internet Explorer?", "Vistrane Integration",
                           MessageIcon::Question, MessageButtons::YesNo, MessageAnswer::Yes};
    if (showMessage(question) == MessageAnswer::Yes) integrateIntoIE();
}

void TProgram::integrateIntoIE() { openPage(std::string(vendorSite) + "/internet-explorer.htm"); }

bool TProgram::resumeAvailable() const { return pMainEditor != nullptr && !pMainEditor->session().empty(); }

void TProgram::resumeEditing() {
    if (!resumeAvailable()) return;
    hidden_ = false;
    pMainEditor->showRoutine();
}

void TProgram::tellResumeState() const { notifyHost("enableResumeMenu", resumeAvailable() ? "enable" : "disable"); }

void TProgram::showOptions() {
    if (optionsOpen_) return;  // the menu of the icon stays in reach while the dialog is up
    optionsOpen_ = true;
    HotKeys* const hotKeys = home_ != nullptr ? home_->hotKeys() : nullptr;
    const AtEnd closed([this] { optionsOpen_ = false; });
    // The host keeps its own capture keys still while they are being set here, and so do we.
    notifyHost("setupMode", "true");
    const AtEnd told([] { notifyHost("setupMode", "false"); });
    if (hotKeys != nullptr) hotKeys->suspend(true);
    const AtEnd resumed([hotKeys] {
        if (hotKeys != nullptr) hotKeys->suspend(false);
    });
    showOptionsDialog(pMainEditor != nullptr && pMainEditor->IsShown() ? pMainEditor : nullptr,
                      optionsServices(hotKeys));
}

bool TProgram::openFile() {
    const size_t before = mainEditor().session().size();
    pMainEditor->btnLoadProjectClick();
    // The dialog may have outlasted the window.
    if (pMainEditor == nullptr || pMainEditor->session().size() <= before) return false;
    tellResumeState();
    restoreApplication();
    return true;
}

bool TProgram::openFileInEditor(const std::string& path) {
    if (!mainEditor().openFile(path)) return false;
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
    Delivery delivery;
    delivery.title = "Clipboard";
    delivery.picture = picture.take();
    return accepted(std::move(delivery));
}

void TProgram::processInfo(const std::string& text) { notifyHost("getInfo", text); }

bool TProgram::storeEncodedContent(const std::string& base64Text) {
    const std::optional<std::vector<uint8_t>> data = base64Decode(base64Text);
    if (!data || data->empty()) return false;
    Result<PngPicture> decoded = readPng(*data);
    if (!decoded) return false;
    Delivery delivery;
    delivery.picture = std::move(decoded->bitmap);
    delivery.action = CaptureAction::Load;
    return accepted(std::move(delivery));
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
    mainEditor().showRoutine();
}

}  // namespace glimmer
