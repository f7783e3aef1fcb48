#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/bitmap.h"
#include "common/modal_dialog.h"
#include "settings/dialog/file_associations.h"
#include "settings/options.h"

class wxBookCtrlBase;
class wxButton;
class wxListBox;
class wxStaticText;

namespace glimmer {

class OptionsPage;

/// What the options dialog needs of the rest of the program.
struct OptionsServices {
    std::shared_ptr<FileAssociations> associations = plainFileAssociations();
    /// A sample picture of that size with the watermark that the options describe; nothing: no preview.
    std::function<Result<TBitmap>(const Options& options, Size size)> watermarkPreview{};
    /// Why an option's command cannot be had with that hot key, a sentence; empty when it can. Nothing: nobody knows.
    std::function<std::string(std::string_view option, int32_t hotKey)> hotKeyTrouble{};
    /// Whether that hot key is one that the system keeps as long as the user does not change a setting, and what opens
    /// that setting.
    std::function<bool(int32_t hotKey)> keptBySystem{};
    std::function<void()> openKeptSetting{};
    /// Full path of the program that the system starts; empty: run at start-up cannot be chosen.
    std::string program{};
};

/// The options dialog: a list of pages on the left, OK, Cancel and Apply below. Works on a copy of the current options;
/// OK and Apply make it current, save it and carry out what the system has to be told (start-up entry, file
/// associations; hot keys follow the options by themselves).
class TVistraneOptions : public ModalDialog {
public:
    TVistraneOptions(wxWindow* parent, OptionsServices services);

    /// Shows the page of that name; false when there is none.
    bool showPage(const std::string& page);

    bool MSWTranslateMessage(WXMSG* message) override;

private:
    void makeButtons(class wxBoxSizer& column);
    void bindHandlers();
    /// Between the controls and values.
    void showValues(const Options& options);
    [[nodiscard]] Options shownValues();
    [[nodiscard]] Options wantedOptions();

    void valueChanged();
    void pageChanged();
    void showHelp(const wxWindow* control);
    void updatePreview();
    void tellHotKeyTrouble(const Options& options);
    /// False, after a message, when the values cannot be applied.
    bool apply();
    bool folderIsComplete(const Options& options);
    bool hotKeysDiffer(const Options& options);
    /// Shows the control and says why its value cannot be applied; false.
    bool refuse(std::string_view page, std::string_view control, const std::string& why);

    void btnBrowseWorkingFolderClick();
    void btnBrowseWatermarkClick();
    void btnAskAgainClick();
    void btnKeyboardSettingClick();
    void okClick(wxCommandEvent& event);
    void FormKeyDown(wxKeyEvent& event);

    OptionsServices services_;
    Options applied_;  ///< what the dialog last showed or applied
    wxListBox* pageList_ = nullptr;
    wxBookCtrlBase* book_ = nullptr;
    wxStaticText* help_ = nullptr;
    wxButton* applyButton_ = nullptr;
    std::vector<OptionsPage*> pages_;
    bool askAgain_ = false;  ///< answers that have no control here are to be forgotten as well
    bool showing_ = false;   ///< values are being shown: no handler acts on them
};

/// Shows the dialog until it is closed, with the page that it showed last.
void showOptionsDialog(wxWindow* parent, OptionsServices services);

}  // namespace glimmer
