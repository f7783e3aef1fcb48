#include "settings/option_table.h"

#include <map>

#include "common/assertion.h"
#include "settings/hot_key.h"

namespace glimmer {

namespace {

using std::string_view;

constexpr string_view display[] = {"Display", "Don't Display"};
constexpr string_view open[] = {"Ask", "Open", "Don't Open"};
constexpr string_view exit[] = {"Ask", "Exit", "Don't Exit"};
constexpr string_view remove[] = {"Ask", "Delete", "Don't Delete"};
constexpr string_view hide[] = {"Ask", "Hide", "Don't Hide"};
constexpr string_view printing[] = {"Ask", "Same settings for all", "Settings for each"};
constexpr string_view covered[] = {"Ask", "Flat", "Editable"};
constexpr string_view annotationPlacement[] = {"Top Left ",    "Top Middle",  "Top Right",    "Below Left",
                                               "Below Middle", "Below Right", "Left Top ",    "Left Center",
                                               "Left Bottom",  "Right Top",   "Right Center", "Right Bottom"};
constexpr string_view numberPlacement[] = {"Outside Top Left", "Inside Top Left", "Inside Centered",
                                           "Inside Bottom Right"};
constexpr string_view watermarkPosition[] = {"Top Left",      "Top Center",   "Top Right",
                                             "Middle Left",   "Middle Right", "Bottom Left",
                                             "Bottom Center", "Bottom Right", "Centered"};
constexpr string_view alignment[] = {"Left", "Center", "Right"};

constexpr Option check(string_view page, string_view control, string_view caption, bool on) {
    return {page, control, OptionKind::Check, caption, on ? 1 : 0, 0, 1};
}
constexpr Option radio(string_view page, string_view control, string_view caption, bool on) {
    return {page, control, OptionKind::Radio, caption, on ? 1 : 0, 0, 1};
}
constexpr Option combo(string_view page, string_view control, string_view caption, std::span<const string_view> texts,
                       int32_t selected) {
    return {page, control, OptionKind::Combo, caption, selected, 0, static_cast<int32_t>(texts.size()) - 1, texts};
}
constexpr Option spin(string_view page, string_view control, string_view caption, int32_t standard, int32_t least,
                      int32_t most) {
    return {page, control, OptionKind::Spin, caption, standard, least, most};
}
constexpr Option colour(string_view page, string_view control, string_view caption, int32_t standard) {
    return {page, control, OptionKind::Colour, caption, standard, 0, 0xFFFFFF};
}
constexpr Option hotKey(string_view control, string_view caption, int32_t standard) {
    return {"Hotkeys", control, OptionKind::HotKey, caption, standard, 0, 0xFFFF};
}
constexpr Option text(string_view page, string_view control, string_view caption, string_view standard) {
    return {page, control, OptionKind::Text, caption, 0, 0, 0, {}, standard};
}

constexpr int32_t printScreenKey = 0x2C;

// A range that is not the control's own in the dialog's design has a bound that keeps what uses it sane: a blur of
// radius 100 already averages whole headlines away, margins beyond 1000 pixels leave nothing to mark.
constexpr Option table[] = {
    check("General", "chkFolderCleanup", "Remove files from working folder that are older than", false),
    spin("General", "spnFolderCleanupMax", "days", 5, 0, 32767),
    text("General", "edtWorkingFolderPath", "Working folder", ""),
    check("General", "chkRunAtStartup", "Run program at system Startup", false),
    check("General", "chkShowToolbar", "Display program Toolbar", true),
    check("General", "chkDebugMode", "Debug mode (write debug information to file)", false),

    combo("Confirmations", "cmbCopiedSuccessfullyMessage", "After copying to the clipboard", display, 0),
    combo("Confirmations", "cmbOpenFolderAfterSaving", "Open the folder after saving", open, 0),
    combo("Confirmations", "cmbExitAfterSaving", "Exit the editor after saving, copying or printing", exit, 0),
    combo("Confirmations", "cmbDeleteCaptures", "Delete captures from the list", remove, 0),
    combo("Confirmations", "cmbConfirmExit", "Exit when all captures are saved", exit, 0),
    combo("Confirmations", "cmbSendCovered", "Send pictures with covered parts", covered, 0),
    combo("Confirmations", "cmbShowWelcomeMessage", "Welcome message", display, 0),

    check("Associations", "chkPNGAssociation", "PNG pictures (*.png)", false),
    check("Associations", "chkGIFAssociation", "GIF pictures (*.gif)", false),
    check("Associations", "chkJPEGAssociation", "JPEG pictures (*.jpg, *.jpeg)", false),
    check("Associations", "chkBMPAssociation", "Bitmaps (*.bmp)", false),
    check("Associations", "chkGMPAssociation", "Glimmerpad projects (*.gmp)", true),

    hotKey("hotCreateZK", "New screenshot", printScreenKey),
    hotKey("hotContinueEditing", "Restore the last editor", hotKeyCtrl | 'D'),
    hotKey("hotCaptureRegion", "Screenshot of a region or window", hotKeyCtrl | hotKeyShift | printScreenKey),
    hotKey("hotCaptureTopWindow", "Screenshot of the top window", hotKeyShift | printScreenKey),
    hotKey("hotSilentCapture", "Screenshot without showing the editor", hotKeyCtrl | printScreenKey),

    check("Capturing", "chkAddURL", "Add webpage URL as Text object", false),
    check("Capturing", "chkAddTitle", "Add webpage title as Text object", false),
    text("Capturing", "edtFilenameTemplate", "Template", ""),  // its default depends on the host, see options.h
    spin("Capturing", "spnNextNum", "Next number", 1, 1, 32767),
    check("Capturing", "chkPadNumber", "Pad number with", true),
    spin("Capturing", "spnNumberPadding", "zeroes", 3, 2, 10),
    check("Capturing", "chkPlayPhotoSound", "Play sound when screen is captured", true),
    check("Capturing", "chkFlashlight", "Imitate Flashlight", false),
    check("Capturing", "chkDontGrabOverlays", "Do not try to capture Video in Overlays", false),
    check("Capturing", "chkAddMouseCursor", "Add mouse cursor as Image object", true),
    check("Capturing", "chkAdjustArea", "Let a region be adjusted before it is taken", false),
    check("Capturing", "chkShowCaptureHint", "Show what can be done while a region is chosen", true),

    check("Editing", "chkFloatingToolbar", "Floating tool windows", false),
    check("Editing", "chkRepositionToolbar", "Place toolbar next to owner objects", true),
    spin("Editing", "spnBlurIntensity", "Blur intensity:", 25, 1, 1000),

    check("Display", "chkDisplayAnnotations", "Display annotation", true),
    check("Display", "chkDisplayNumbers", "Display number", false),
    check("Display", "chkDisplayCalloutLines", "Display callout line", true),
    check("Display", "chkDisplayShadows", "Display shadows", true),
    check("Display", "chkDisplayHintsNew", "Display program hints", true),

    check("Styles", "chkRememberVisibility",
          "Styles remember elements Visibility (you may create arbitrary objects, i.e. Line+Number)", false),
    combo("Styles", "cmbAnnotationPlacement", "Annotation placement", annotationPlacement, 1),
    combo("Styles", "cmbNumberPlacement", "Number placement", numberPlacement, 0),

    check("Saving", "chkEmbedNativeInfo", "Embed annotation info into PNGs", true),

    check("Update", "chkCheckForZKUpdates", "Check for updates at startup", false),

    check("Watermarking", "chkWMDisplay", "Display watermark", false),
    radio("Watermarking", "radWMFromBitmap", "Watermark from a bitmap file", false),
    radio("Watermarking", "radWMFromText", "Watermark from a text template", true),
    text("Watermarking", "edtWMBitmapFile", "Bitmap file", ""),
    spin("Watermarking", "spnWMBitmapOpacity", "Bitmap opacity", 10, 0, 100),
    text("Watermarking", "edtWMText", "Text", "%t - %y-%m-%d"),
    spin("Watermarking", "spnWMMargins", "Margins", 10, 0, 1000),
    spin("Watermarking", "spnWMBackgroundOpacity", "Background opacity", 5, 0, 100),
    spin("Watermarking", "spnWMFrameWidth", "Frame width", 1, 0, 20),
    combo("Watermarking", "cmbWMPosition", "Position", watermarkPosition, 7),
    colour("Watermarking", "clrWMBackground", "Background", 0xD8FEFE),
    colour("Watermarking", "clrWMFrame", "Frame", 0x808080),
    combo("Watermarking", "cmbWMTextAlignment", "Text alignment", alignment, 1),

    text("Annotation Control", "cmbAnnotationCtlFont", "Font", ""),
    spin("Annotation Control", "spnAnnotationCtlFontSize", "Size", 12, 1, 32),
    colour("Annotation Control", "clrAnnotationCtlSelectionColor", "Selection colour", 0xC0DCC0),
    text("Annotation Control", "edtFontName", "Default font name", "Arial"),

    combo("", "cmbMultipleSelectionPrinting", "Printing several captures", printing, 0),
    combo("", "cmbLoadingFilesViaDDropHint", "Hint on dropping files", display, 0),
    combo("", "cmbMissingDataMessage", "Notice on a picture without the program's data", display, 0),
    combo("", "cmbHideBeforeNavigation", "Hide the editor before the browser is shown", hide, 0),
    check("", "chkLeftPanelVisible", "Main editor's left panel", true),
    spin("", "spnLeftPanelWidth", "Width of the left panel", 182, 0, 10000),
    check("", "chkFirstPromotionIEIntegration", "The Internet Explorer integration is still to be offered", true),
    colour("", "clrPenColor", "Colour of the ink", 0x00FFFF),
    spin("", "spnPenSize", "Width of the ink", 5, 1, 1000),
    check("", "chkHidePreviewLinks", "Do not show the links window after an upload", false),
    spin("", "spnSelectedCaptureSource", "Selected monitor or capture source", 0, 0, 1000),
    check("", "chkTellOfPrintScreen", "The user is still to be told that the system keeps Print Screen", true),
    check("", "chkAskForContinueKey", "The user is still to be asked for the key that restores the last editor", true),
    check("", "chkTellOfTrayIcon", "The user is still to be told where the program is without a window", true),
    text("", "edtCapturePresets", "Captures with keys of their own", ""),
    text("", "edtLastCaptureArea", "The area that was captured last", ""),
    check("", "chkStartFromScreen", "A capture without a picture starts from the screen", true),
};

}  // namespace

std::span<const Option> optionTable() { return table; }

size_t optionIndex(string_view control) {
    static const std::map<string_view, size_t> places = [] {
        std::map<string_view, size_t> map;
        for (size_t i = 0; i < std::size(table); ++i) map.emplace(table[i].control, i);
        return map;
    }();
    const auto place = places.find(control);
    GLIMMER_ASSERT(place != places.end(), "pControl!=NULL", "uFormOptions");
    return place->second;
}

string_view standardFilenameTemplate(HostKind kind) {
    return kind == HostKind::Standalone ? "ZK Screen Capture #%n" : "Vistrane Screen Capture #%n - '%t' - %u";
}

}  // namespace glimmer
