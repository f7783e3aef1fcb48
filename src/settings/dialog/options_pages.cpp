// What stands on each page of the options dialog, and where.

#include <wx/stattext.h>

#include "common/host_kind.h"
#include "settings/dialog/options_page.h"

namespace glimmer {

namespace {

void general(OptionsPage& page) {
    page.check("chkRunAtStartup");
    page.check("chkShowToolbar");
    page.check("chkDebugMode");
    page.group("Working folder");
    page.rowWithButton("edtWorkingFolderPath", "btnBrowseWorkingFolder", "Browse...");
    page.checkWithSpin("chkFolderCleanup", "spnFolderCleanupMax");
}

void confirmations(OptionsPage& page) {
    for (const char* control : {"cmbCopiedSuccessfullyMessage", "cmbOpenFolderAfterSaving", "cmbExitAfterSaving",
                                "cmbDeleteCaptures", "cmbConfirmExit", "cmbSendCovered", "cmbShowWelcomeMessage"})
        page.row(control);
    page.button("btnAskAgain", "Ask and display everything again");
}

void associations(OptionsPage& page) {
    page.note("Open these files with the program:");
    for (const char* control :
         {"chkPNGAssociation", "chkGIFAssociation", "chkJPEGAssociation", "chkBMPAssociation", "chkGMPAssociation"})
        page.check(control);
}

void hotkeys(OptionsPage& page) {
    page.note(isStandalone() ? "Click a box and press the keys; Delete clears it."
                             : "These keys are the standalone program's. Add-ons have keys of their own.");
    for (const char* control :
         {"hotCreateZK", "hotCaptureRegion", "hotCaptureTopWindow", "hotSilentCapture", "hotContinueEditing"})
        page.row(control);
    auto* trouble = new wxStaticText(page.place(), wxID_ANY, wxString(), wxDefaultPosition,
                                     page.FromDIP(wxSize(440, 68)), wxST_NO_AUTORESIZE);
    trouble->SetName("lblHotKeyTrouble");
    page.add(trouble);
    page.button("btnKeyboardSetting", "Windows settings...");
}

void capturing(OptionsPage& page) {
    page.group("Default file name");
    page.row("edtFilenameTemplate");
    page.row("spnNextNum");
    page.checkWithSpin("chkPadNumber", "spnNumberPadding");
    page.note("%u address, %t title, %n number,\n%y year, %m month, %d day, %H hour, %M minute, %S second");
    page.group("New captures");
    for (const char* control : {"chkAddURL", "chkAddTitle", "chkAddMouseCursor", "chkDontGrabOverlays", "chkAdjustArea",
                                "chkShowCaptureHint"})
        page.check(control);
    page.group("Feedback");
    for (const char* control : {"chkPlayPhotoSound", "chkFlashlight"}) page.check(control);
}

void editing(OptionsPage& page) {
    page.check("chkFloatingToolbar");
    page.check("chkRepositionToolbar");
    page.row("spnBlurIntensity");
    auto* radius = new wxStaticText(page.place(), wxID_ANY, wxString());
    radius->SetName("lblBlurRadius");
    page.behind(radius);
}

void display(OptionsPage& page) {
    for (const char* control : {"chkDisplayAnnotations", "chkDisplayNumbers", "chkDisplayCalloutLines",
                                "chkDisplayShadows", "chkDisplayHintsNew"})
        page.check(control);
}

void styles(OptionsPage& page) {
    page.check("chkRememberVisibility");
    page.row("cmbAnnotationPlacement");
    page.row("cmbNumberPlacement");
}

void saving(OptionsPage& page) {
    page.check("chkEmbedNativeInfo");
    page.note(
        "Annotations and the picture below them are kept inside the PNG file, so that it can be opened and changed "
        "again. Switch this off to give away files that hold nothing but what they show.");
}

void update(OptionsPage& page) { page.check("chkCheckForZKUpdates"); }

void watermarking(OptionsPage& page) {
    page.check("chkWMDisplay");
    page.group("Watermark");
    page.radios({"radWMFromText", "radWMFromBitmap"});
    page.row("edtWMText");
    page.row("cmbWMTextAlignment");
    page.rowOfTwo("clrWMBackground", "spnWMBackgroundOpacity", "%");
    page.rowOfTwo("clrWMFrame", "spnWMFrameWidth", "pixels");
    page.rowWithButton("edtWMBitmapFile", "btnBrowseWatermark", "Browse...");
    page.row("spnWMBitmapOpacity", "%");
    page.group("Place");
    page.row("cmbWMPosition");
    page.row("spnWMMargins", "pixels");
    page.groupBeside("Preview");
    auto* preview = new wxPanel(page.place(), wxID_ANY, wxDefaultPosition, page.FromDIP(wxSize(160, 100)));
    preview->SetName("pnlWMPreview");
    page.add(preview, true);
}

void annotationControl(OptionsPage& page) {
    page.row("edtFontName");
    page.group("Annotation list");
    page.row("cmbAnnotationCtlFont");
    page.row("spnAnnotationCtlFontSize", "points");
    page.row("clrAnnotationCtlSelectionColor");
}

}  // namespace

std::vector<OptionsPage*> makeOptionsPages(wxWindow* parent) {
    const struct {
        std::string_view title;
        void (*fill)(OptionsPage& page);
    } contents[] = {
        {"General", general},
        {"Confirmations", confirmations},
        {"Associations", associations},
        {"Hotkeys", hotkeys},
        {"Capturing", capturing},
        {"Editing", editing},
        {"Display", display},
        {"Styles", styles},
        {"Saving", saving},
        {"Update", update},
        {"Watermarking", watermarking},
        {"Annotation Control", annotationControl},
    };
    std::vector<OptionsPage*> pages;
    for (const auto& content : contents) {
        auto* page = new OptionsPage(parent, content.title);
        content.fill(*page);
        pages.push_back(page);
    }
    return pages;
}

}  // namespace glimmer
