#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/bitmap.h"

namespace glimmer {

class CaptureDocument;
class TSaver;

/// What is to happen with a capture; hosts send these numbers. Any other number does nothing more than Load.
enum class CaptureAction : uint32_t {
    Edit = 0,
    Save = 1,
    Copy = 2,
    Mail = 3,
    ExternalViewer = 4,
    Upload = 5,
    Load = 6,
    Print = 7,
    EncodeText = 8,
    EncodeImage = 9,
    SaveAutomatically = 10,
};

/// What the controller asks of the system, so that a test can stand in its place. Empty members mean the system.
struct ProgramSeams {
    /// Available physical memory in bytes.
    std::function<uint64_t()> availableMemory;
    /// Whether a working bitmap of that many pixels can be had now.
    std::function<bool(Size)> probeBitmap;
};

/// The program controller: owns what lives between captures, makes an editor of each one and runs its action. Lives
/// from the first request of a host until the shutdown, or as long as the standalone program; see pProgram.
class TProgram {
public:
    explicit TProgram(std::string addonVersion, ProgramSeams seams = {});
    ~TProgram();
    TProgram(const TProgram&) = delete;
    TProgram& operator=(const TProgram&) = delete;
    TProgram(TProgram&&) = delete;
    TProgram& operator=(TProgram&&) = delete;

    /// Second half of the construction: whether the controller can work.
    bool initialize();
    /// Closes every window without asking and releases the editors; before the destructor.
    void closeWindows();

    /// The session may end: what is open and not saved is kept for the next start, within two seconds for all calls of
    /// one round, and the settings are written. Asks nothing and tells nothing, a failure neither; all goes on when the
    /// session does.
    static void prepareForSessionEnd() noexcept;

    /// Takes a capture and runs its action (code modulo 100). `pngData` is a PNG file or nothing, `bitmap` finished
    /// pixels or nothing; when width and height are positive the picture is scaled to them. With neither the screen
    /// is captured, if the user wants that. `tag` is accepted and ignored.
    void HandleCapture(const std::string& url, const std::string& title, const std::string& tag,
                       std::optional<std::span<const uint8_t>> pngData, std::optional<TBitmap> bitmap, uint32_t action,
                       int32_t width, int32_t height);

    /// The same for a picture that came but cannot be used: the user reads why, and the capture counts as an empty one.
    void refusePicture(const std::string& why, uint32_t action);

    /// The main editor window exists after this; it is not shown.
    void prepareMainEditor();
    /// Offers the captures that an earlier run left behind when it crashed. For the standalone program's start.
    void offerRecovered();
    /// Asks once whether Internet Explorer should offer the program too.
    void offerIntegration();
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

    /// Encodes what the last EncodeText or EncodeImage capture has become since, as long as it is open.
    void encodeAgain();
    /// Base64 text of the last EncodeText capture; kept until the next capture.
    [[nodiscard]] const std::string& encodedText() const { return encodedText_; }
    /// PNG file of the last EncodeImage capture; kept until the next capture.
    [[nodiscard]] const std::vector<uint8_t>& encodedImage() const { return encodedImage_; }
    /// UTF-8 path of the file that the last Save or SaveAutomatically wrote; empty when it wrote none.
    [[nodiscard]] const std::string& savedPath() const { return savedPath_; }

    /// Turns captures into output.

    [[nodiscard]] int32_t captureCount() const { return captureCount_; }  ///< attempts to make an editor
    [[nodiscard]] int32_t refusedCount() const { return refusedCount_; }  ///< refused for lack of memory
    [[nodiscard]] bool captureWasEmpty() const { return emptyCapture_; }
    [[nodiscard]] bool hidden() const { return hidden_; }
    void skipNextCapture() { skipNext_ = true; }
    [[nodiscard]] const std::string& addonVersion() const { return addonVersion_; }

private:
    struct Arrival;
    bool beginCapture();
    static Status receive(Arrival& arrival, std::optional<std::span<const uint8_t>> pngData,
                          std::optional<TBitmap> bitmap, Size size);
    CaptureDocument* createEditor(Arrival& arrival);
    static std::string editorWarning();
    static void warnInFront(const std::string& text);
    void refuse();
    void refuseEditor(const std::string& text);
    void encode(CaptureDocument& document, CaptureAction action);
    void runAction(CaptureDocument& document, CaptureAction action);
    void followUp(CaptureAction action);
    void offerHiding();

    std::string addonVersion_;
    ProgramSeams seams_;
    std::unique_ptr<TSaver> saver_;
    std::string encodedText_;
    std::vector<uint8_t> encodedImage_;
    CaptureDocument* encoded_ = nullptr;  ///< may be closed by now
    uint64_t encodedRevision_ = 0;
    std::string savedPath_;
    int32_t captureCount_ = 0;
    int32_t refusedCount_ = 0;
    bool skipNext_ = false;
    bool emptyCapture_ = false;
    bool hidden_ = false;
};

/// The one controller of the process; none before the first request and after the shutdown.
extern std::unique_ptr<TProgram> pProgram;

}  // namespace glimmer
