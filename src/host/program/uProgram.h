#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "common/geometry.h"
#include "host/program/capture_action.h"
#include "host/program/delivery.h"
#include "host/program/encoded_content.h"
#include "host/program/start_rules.h"

class wxWindow;

namespace glimmer {

class CaptureDocument;
class HotKeys;
class TMainEditor;
class TSaver;

/// What the controller asks of the system, so that a test can stand in its place. Empty members mean the system.
struct ProgramSeams {
    /// Available physical memory in bytes.
    std::function<uint64_t()> availableMemory;
    /// Whether a working bitmap of that many pixels can be had now.
    std::function<bool(Size)> probeBitmap;
};

/// What the standalone program has around its controller: an icon in the notification area, hot keys.
class ProgramHome {
public:
    virtual ~ProgramHome() = default;
    /// Null before there are any.
    virtual HotKeys* hotKeys() = 0;
    /// The user has put the editor away.
    virtual void editorHidden() = 0;
};

/// The program controller: owns what lives between captures, makes an editor of each one and runs its action. Lives
/// from the first request of a host until the shutdown, or as long as the standalone program; see pProgram.
class TProgram {
public:
    /// `home` outlives it; null in a host.
    explicit TProgram(std::string addonVersion, ProgramHome* home = nullptr, ProgramSeams seams = {});
    ~TProgram();
    TProgram(const TProgram&) = delete;
    TProgram& operator=(const TProgram&) = delete;
    TProgram(TProgram&&) = delete;
    TProgram& operator=(TProgram&&) = delete;

    /// What the main window's button for new captures opens; for the start-up, before there is a window.
    static void setCaptureMenu(std::function<void(wxWindow& button)> show);

    /// Closes every window without asking and releases the editors; before the destructor.
    void closeWindows();

    /// The session may end: what is open and not saved is kept for the next start, within two seconds for all calls of
    /// one round, and the settings are written. Asks nothing and tells nothing, a failure neither; all goes on when the
    /// session does.
    static void prepareForSessionEnd() noexcept;

    /// Takes a capture and runs its action. A picture that came but cannot be used is refused with a message; without
    /// one the screen is captured, if the user wants that.
    void HandleCapture(Delivery delivery);
    /// A capture is about to come from a host: the main editor window exists after this unless the program is hidden.
    void prepareForDelivery();

    /// Offers the captures that an earlier run left behind when it crashed. For the standalone program's start.
    void offerRecovered();
    /// Asks once whether Internet Explorer should offer the program too, if this is a moment for it.
    void offerIntegration(IntegrationMoment moment);
    /// Does the integration itself ("integrateIntoIE").
    void integrateIntoIE();

    [[nodiscard]] bool resumeAvailable() const;  ///< at least one editor is open
    /// Shows the main editor with its captures, in front and focused. Does nothing when no editor is open.
    void resumeEditing();
    /// Sends "enableResumeMenu" with "enable" or "disable".
    void tellResumeState() const;
    void showOptions();
    /// The open dialog of the main editor. What is opened is shown in front, and the host told of it; whether anything
    /// was.
    bool openFile();
    /// Opens a picture or a project as the open dialog does; whether an editor came of it. `path` is UTF-8.
    bool openFileInEditor(const std::string& path);
    /// Opens the clipboard's picture in a new editor; whether there was one.
    bool openFromClipboard();
    /// Text about the server that the host passes on; its answer goes to the host as "getInfo".
    void processInfo(const std::string& text);
    /// Opens the picture in a base64 text as a capture; whether that worked.
    bool storeEncodedContent(const std::string& base64Text);

    /// Opens a web page in the browser. One that is the host is asked to, and the main window hides before if the user,
    /// who is asked, wants to see the page; captures then stay in the background until one is to be edited.
    void openPage(const std::string& url);
    /// Shows everything again (`mnuContinue`).
    void restoreApplication();

    /// What the last EncodeText or EncodeImage capture has become since, as long as it is open; kept until the next
    /// capture.
    const EncodedContent& encodedContent();
    /// UTF-8 path of the file that the last Save or SaveAutomatically wrote; empty when it wrote none.
    [[nodiscard]] const std::string& savedPath() const { return savedPath_; }

    [[nodiscard]] int32_t captureCount() const { return captureCount_; }  ///< attempts to make an editor
    [[nodiscard]] int32_t refusedCount() const { return refusedCount_; }  ///< refused for lack of memory
    [[nodiscard]] bool captureWasEmpty() const { return emptyCapture_; }
    [[nodiscard]] bool hidden() const { return hidden_; }
    void skipNextCapture() { skipNext_ = true; }
    [[nodiscard]] const std::string& addonVersion() const { return addonVersion_; }

private:
    bool beginCapture();
    bool accepted(Delivery delivery);
    CaptureDocument* createEditor(Delivery delivery);
    static void warnInFront(const std::string& text);
    void refuse();
    CaptureDocument* refuseEditor(const std::string& text);
    void runAction(CaptureDocument& document, CaptureAction action);
    void moveWindow(CaptureAction action, bool made);
    TMainEditor& mainEditor();
    void offerHiding();

    std::string addonVersion_;
    ProgramHome* home_;
    ProgramSeams seams_;
    std::unique_ptr<TSaver> saver_;
    EncodedContent encoded_;
    std::string savedPath_;
    int32_t captureCount_ = 0;
    int32_t refusedCount_ = 0;
    bool skipNext_ = false;
    bool emptyCapture_ = false;
    bool hidden_ = false;
    bool optionsOpen_ = false;
};

/// The one controller of the process; none before the first request and after the shutdown.
extern std::unique_ptr<TProgram> pProgram;

}  // namespace glimmer
