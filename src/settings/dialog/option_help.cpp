#include "settings/dialog/option_help.h"

#include <algorithm>
#include <iterator>

namespace glimmer {

namespace {

struct Help {
    std::string_view control;
    std::string_view text;
};

constexpr std::string_view confirmation =
    "Choose whether this question or notice comes, or what is done without it. Ticking its check box changes the "
    "choice here.";
constexpr std::string_view association = "Opens these files in the editor when they are double-clicked.";
constexpr std::string_view hotKey =
    "Click here and press the keys. Letters, digits and the like need Ctrl or Alt with them. Delete clears the box.";

constexpr Help table[] = {
    {"General", "Start with Windows, the toolbar, the working folder and its cleaning."},
    {"Confirmations", "What the program asks and tells, and what it does without asking."},
    {"Associations", "Which files open in the editor when they are double-clicked."},
    {"Hotkeys", "Keys that work in every program as long as the standalone program runs."},
    {"Capturing", "File names, and what happens when a picture is taken."},
    {"Editing", "The tool windows and the strength of the blur."},
    {"Display", "Which parts new annotations show, shadows, and hints on buttons."},
    {"Styles", "What a style remembers, and where labels and numbers of new annotations stand."},
    {"Saving", "Whether PNG files stay editable."},
    {"Update", "Whether to look for a new version."},
    {"Watermarking", "A text or a logo on everything that leaves the program."},
    {"Annotation Control", "The font of new labels and the look of the annotation list."},
    {"chkFolderCleanup",
     "At each start, deletes old files of this program from the working folder. Other files are never touched."},
    {"spnFolderCleanupMax", "Files that were last changed more days ago than this are deleted."},
    {"edtWorkingFolderPath",
     "Where pictures for e-mail and publishing are put. Empty: a folder in your application data."},
    {"chkRunAtStartup", "Starts the program when you sign in to Windows."},
    {"chkShowToolbar", "Shows the toolbar of the main window."},
    {"chkDebugMode",
     "Writes what the program does to a file beside the settings, for a report of a fault. No password is written."},
    {"cmbCopiedSuccessfullyMessage", confirmation},
    {"cmbOpenFolderAfterSaving", confirmation},
    {"cmbExitAfterSaving", confirmation},
    {"cmbDeleteCaptures", confirmation},
    {"cmbConfirmExit", confirmation},
    {"cmbSendCovered",
     "Whether a picture that is mailed, published or opened elsewhere carries the page below what covers it."},
    {"cmbShowWelcomeMessage", "Kept for a later version: this one has no welcome message."},
    {"chkPNGAssociation", association},
    {"chkGIFAssociation", association},
    {"chkJPEGAssociation", association},
    {"chkBMPAssociation", association},
    {"chkGMPAssociation", association},
    {"hotCreateZK", hotKey},
    {"hotCaptureRegion", hotKey},
    {"hotContinueEditing", hotKey},
    {"hotCaptureTopWindow", hotKey},
    {"hotSilentCapture", hotKey},
    {"chkAddURL", "Puts the page's address as a text into the top left corner of each new capture."},
    {"chkAddTitle", "Puts the page's title as a text below the address."},
    {"chkAdjustArea",
     "An area that was dragged stays on the frozen screen, to be moved and sized, until Enter takes it."},
    {"chkShowCaptureHint",
     "Shows keys and mouse in a corner of the frozen screen. F1 shows and hides them there, too."},
    {"edtFilenameTemplate",
     "%u address, %t title, %n number, %y year, %m month, %d day, %H hour, %M minute, %S second."},
    {"spnNextNum", "The number that %n stands for next. It rises by one with each name."},
    {"chkPadNumber", "Puts zeroes before a short number, so that names sort in their order."},
    {"spnNumberPadding", "The least number of digits."},
    {"chkPlayPhotoSound", "Plays the sound of a shutter."},
    {"chkFlashlight", "Lights the screen up for a moment when it is captured."},
    {"chkDontGrabOverlays", "Leaves out video that the graphics card shows by itself; captures then take less time."},
    {"chkAddMouseCursor", "Adds the mouse pointer as an object that you can move or delete."},
    {"chkFloatingToolbar", "Shows the editor's tools in windows of their own."},
    {"chkRepositionToolbar", "Moves the tools to the object that they belong to."},
    {"spnBlurIntensity", "How strongly the blur tool blurs: the radius is a tenth of this, in pixels."},
    {"chkDisplayAnnotations", "New objects show their text."},
    {"chkDisplayNumbers", "New objects show their number."},
    {"chkDisplayCalloutLines", "New objects show the line between shape and text."},
    {"chkDisplayShadows", "Objects throw a shadow."},
    {"chkDisplayHintsNew", "Shows a short explanation when the mouse pointer rests on a button."},
    {"chkRememberVisibility", "A style then also decides which parts of an object are shown."},
    {"cmbAnnotationPlacement", "Where the text of a new object stands."},
    {"cmbNumberPlacement", "Where the number of a new object stands."},
    {"chkEmbedNativeInfo", "Saved PNG files then stay editable; they get larger. Other programs show them as always."},
    {"chkCheckForZKUpdates", "Kept for a later version: this one does not look for updates."},
    {"chkWMDisplay",
     "Draws a watermark on every picture that is saved, copied, sent, uploaded or printed. The editor does not show "
     "it."},
    {"radWMFromBitmap", "Draws a picture of yours, a logo for example."},
    {"radWMFromText", "Draws a text."},
    {"edtWMBitmapFile", "A PNG, JPEG, GIF or BMP file."},
    {"spnWMBitmapOpacity", "100 hides what is below, 0 shows nothing of the picture."},
    {"edtWMText",
     "May hold the placeholders of the file name template: %u address, %t title, %y %m %d date, %H %M %S time."},
    {"spnWMMargins", "Distance from the picture's edges in pixels."},
    {"spnWMBackgroundOpacity", "100 hides what is below the text, 0 draws the text alone."},
    {"spnWMFrameWidth", "Width of the line around the text in pixels; 0 draws none."},
    {"cmbWMPosition", "Where on the picture the watermark stands."},
    {"clrWMBackground", "Colour behind the text."},
    {"clrWMFrame", "Colour of the line around the text, and of the text."},
    {"cmbWMTextAlignment", "How the lines of a longer text are aligned."},
    {"cmbAnnotationCtlFont", "Font of the annotation list. Empty: the system's."},
    {"spnAnnotationCtlFontSize", "Size of that font in points."},
    {"clrAnnotationCtlSelectionColor", "Colour of the selected line of the annotation list."},
    {"edtFontName", "Font of the texts that you add to captures."},
};

}  // namespace

std::string_view optionHelp(std::string_view control) {
    const auto* help = std::find_if(std::begin(table), std::end(table),
                                    [control](const Help& entry) { return entry.control == control; });
    return help == std::end(table) ? std::string_view() : help->text;
}

}  // namespace glimmer
