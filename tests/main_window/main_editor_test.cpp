#include <gmock/gmock.h>
#include <wx/app.h>
#include <wx/msw/wrapwin.h>
#include <wx/textctrl.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <chrono>
#include <map>
#include <tuple>

#include "capture/screen_area.h"
#include "common/contrast.h"
#include "common/link_colour.h"
#include "common/modal_dialog.h"
#include "common/wide_text.h"
#include "editor/commands/add_annotation.h"
#include "editor/commands/set_info.h"
#include "imaging/clipboard.h"
#include "main_editor_fixture.h"
#include "main_window/main_commands.h"
#include "output/files/editable_png.h"
#include "output/places/output_folders.h"
#include "support/not_copied.h"
#include "support/windows/dialog_driver.h"
#include "support/windows/kept_clipboard.h"
#include "support/windows/mail_program.h"

// The main editor as it is used: mouse, keys, files dropped on it, and the ways to leave it.

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using MainEditor = MainEditorTest;

// --- the list -----------------------------------------------------------------------------------------------------

/// A list as Windows has it in a view by icons: each item has a place of its own on the screen and keeps it. One that
/// is inserted takes the first place that is free, at the end; arranging closes gaps in the order of places. Under Wine
/// the places follow the indices.
class PositionedItems : test::NotCopied {
public:
    explicit PositionedItems(HWND list) : list_(list) {
        for (size_t i = 0; i < static_cast<size_t>(ListView_GetItemCount(list)); ++i) places_.push_back(i);
        SetWindowSubclass(list, procedure, 1, reinterpret_cast<DWORD_PTR>(this));
    }
    ~PositionedItems() { RemoveWindowSubclass(list_, procedure, 1); }

private:
    static LRESULT CALLBACK procedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                      DWORD_PTR self) {
        auto& places = reinterpret_cast<PositionedItems*>(self)->places_;
        const bool asksForPlace = message == LVM_GETITEMRECT || message == LVM_GETSUBITEMRECT;
        if (asksForPlace && wParam < places.size()) wParam = places[wParam];
        if (message == LVM_DELETEITEM) {
            for (size_t& place : places) place -= place > places[wParam] ? 1 : 0;
            places.erase(places.begin() + static_cast<std::ptrdiff_t>(wParam));
        }
        const LRESULT answer = DefSubclassProc(list, message, wParam, lParam);
        if (message == LVM_INSERTITEMW) places.insert(places.begin() + answer, places.size());
        return answer;
    }

    HWND list_;
    std::vector<size_t> places_;  ///< by index
};

TEST_F(MainEditor, CapturesAreMovedAndStandOnTheScreenInTheirOrder) {
    editor_->SetSize(editor_->FromDIP(wxSize(1000, 900)));
    add({"a", "b", "c", "d"});
    const PositionedItems asOnWindows(list().GetHWND());
    const auto expectOrder = [this](const std::vector<std::string>& expected) {
        std::map<int, std::string> onScreen;
        for (long i = 0; i < list().GetItemCount(); ++i) {
            wxRect area;
            list().GetItemRect(i, area);
            onScreen[area.y] = list().GetItemText(i).utf8_string();
        }
        std::vector<std::string> shown;
        for (const auto& [y, name] : onScreen) shown.push_back(name);
        EXPECT_EQ(shown, expected);
        EXPECT_EQ(names(), expected);
    };
    const auto drag = [this](long from, long to, int below) {
        const wxPoint start = itemPoint(from);
        const wxPoint end = itemPoint(to);
        test::mouseDrag(list(), start.x, start.y, end.x, end.y + below);
        test::pump();
    };
    const int imageOfA = imageOf(0);
    list().SetFocus();
    list().SetItemState(0, wxLIST_STATE_FOCUSED, wxLIST_STATE_FOCUSED);
    test::pressKey(VK_DOWN, 0x8000);
    expectOrder({"b", "a", "c", "d"});
    for (int i = 0; i < 2; ++i) {  // it cannot go further than to the top
        test::pressKey(VK_UP, 0x8000);
        expectOrder({"a", "b", "c", "d"});
    }
    const int half = list().FromDIP(45);
    drag(0, 3, half);  // below the last
    expectOrder({"b", "c", "d", "a"});
    EXPECT_EQ(imageOf(3), imageOfA);
    EXPECT_EQ(session().current()->info().name, "a");
    EXPECT_EQ(editor_->selectedCaptures(), Captures{session().current()});
    drag(2, 0, -half);  // above the first
    expectOrder({"d", "b", "c", "a"});
    drag(1, 1, half / 4);  // on itself
    expectOrder({"d", "b", "c", "a"});
    OptionsHolder().setNumber("cmbDeleteCaptures", 1);
    list().SetItemState(2, wxLIST_STATE_SELECTED, wxLIST_STATE_SELECTED);
    clickLabel("lblDeleteSelected");
    add({"e"});
    expectOrder({"d", "a", "e"});
}

// --- colours ------------------------------------------------------------------------------------------------------

/// Other colours of the system, for as long as it lives.
class SystemColours : test::NotCopied {
public:
    explicit SystemColours(std::map<int, COLORREF> colours) {
        for (const auto& [which, colour] : colours) before_[which] = GetSysColor(which);
        set(colours);
    }
    ~SystemColours() { set(before_); }

private:
    static void set(const std::map<int, COLORREF>& colours) {
        for (const auto& [which, colour] : colours) SetSysColors(1, &which, &colour);
    }
    std::map<int, COLORREF> before_;
};

/// The best contrast of anything in that part of the window to the colour in its corner.
double contrastIn(const wxWindow& window, wxRect area) {
    const wxRect at = window.GetScreenRect();
    const auto picture =
        grabScreen({at.x + area.x, at.y + area.y, at.x + area.GetRight() + 1, at.y + area.GetBottom() + 1});
    const auto colour = [&](int x, int y) {
        const Colour of = picture->pixel(x, y);
        return wxColour(redOf(of), greenOf(of), blueOf(of));
    };
    double best = 1;
    for (int y = 0; y < picture->height(); ++y)
        for (int x = 0; x < picture->width(); ++x) best = std::max(best, contrast(colour(x, y), colour(0, 0)));
    return best;
}

TEST_F(MainEditor, EverythingCanBeReadInEachThemeAlsoWhenItIsChosenLater) {
    const auto check = [this](const char* theme) {
        for (int round = 0; round < 5; ++round) test::pump();
        editor_->Update();
        const wxWindow& host = *test::findControl(*editor_, "pnlCanvas");
        EXPECT_GE(contrastIn(host, host.GetClientRect()), readable) << theme;
        for (const char* name : {"btnLoadProject", "btnOptions", "imgHandle"}) {
            const wxWindow& control = *test::findControl(*editor_, name);
            EXPECT_GE(contrastIn(control, control.GetClientRect()), name[0] == 'b' ? readable : 1.2) << theme << name;
            EXPECT_EQ(control.GetParent()->GetBackgroundColour(), wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE))
                << theme;
        }
    };
    check("the usual one");
    std::map<int, COLORREF> dark;
    for (const int ground : {COLOR_WINDOW, COLOR_BTNFACE, COLOR_APPWORKSPACE}) dark[ground] = RGB(0, 0, 0);
    for (const int text : {COLOR_WINDOWTEXT, COLOR_BTNTEXT}) dark[text] = RGB(255, 255, 255);
    dark[COLOR_HIGHLIGHT] = RGB(26, 235, 255);
    dark[COLOR_HIGHLIGHTTEXT] = RGB(0, 0, 0);
    dark[COLOR_HOTLIGHT] = RGB(255, 255, 0);
    dark[COLOR_GRAYTEXT] = RGB(63, 242, 63);
    {
        const SystemColours black(dark);
        check("black");
        add({"capture"});
        EXPECT_EQ(list().GetBackgroundColour(), *wxBLACK);
        EXPECT_EQ(test::find<wxGenericHyperlinkCtrl>(*editor_, "lblSelectAll")->GetNormalColour(), linkColour());
        session().discardAll();
    }
    check("the usual one again");
}

TEST_F(MainEditor, CapturesAreRenamedInPlace) {
    add({"old"});
    const std::tuple<std::string, uint8_t, std::string> cases[] = {{" n\xC3\xA9w ", VK_RETURN, "n\xC3\xA9w"},
                                                                   {"", VK_RETURN, "n\xC3\xA9w"},
                                                                   {"given up", VK_ESCAPE, "n\xC3\xA9w"}};
    for (const auto& [typed, key, name] : cases) {
        ASSERT_TRUE(test::bringForward(*editor_, &list()));
        test::pressKey(VK_F2);
        ASSERT_TRUE(test::pumpUntil([this] { return list().GetEditControl() != nullptr; }));
        test::pressKey('A', 0x4000);
        test::pressKey(VK_DELETE);
        if (!typed.empty()) test::typeText(typed);
        test::pressKey(key);
        ASSERT_TRUE(test::pumpUntil([this] { return list().GetEditControl() == nullptr; }));
        EXPECT_THAT(names(), ElementsAre(name));
        EXPECT_EQ(list().GetItemText(0).utf8_string(), name);
    }
    EXPECT_TRUE(messages_.messages.empty());
    test::pressKey('Z', 0x4000);
    EXPECT_EQ(list().GetItemText(0), "old");
}

TEST_F(MainEditor, TheThumbnailWaitsUntilTheCaptureRests) {
    CaptureDocument& capture = session().add(grey("one"));
    ASSERT_TRUE(test::pumpUntil([this] { return redOfThumbnail(0) == 240; }));
    TBBShape shape;
    shape.shape.settings.kind = ShapeKind::FilledRectangle;
    shape.shape.settings.shapeColour = rgb(0, 0, 255);
    shape.shape.settings.opacity = 100;
    shape.shape.rectangle = {0, 0, 300, 200};
    const auto changed = std::chrono::steady_clock::now();
    ASSERT_TRUE(capture.run(std::make_unique<AddAnnotation>(shape)).ok());
    ASSERT_TRUE(test::pumpUntil([this] { return redOfThumbnail(0) == 0; }));
    EXPECT_GE(std::chrono::steady_clock::now() - changed, std::chrono::milliseconds(400));
}

TEST_F(MainEditor, SelectsAndDeletesThroughLabelsAndKeepsToTheAnswer) {
    add({"a", "b", "c", "d"});
    for (const auto& [label, count] :
         {std::pair("lblSelectAll", 4U), {"lblSelectOther", 3U}, {"lblSelectCurrent", 1U}}) {
        clickLabel(label);
        EXPECT_EQ(editor_->selectedCaptures().size(), count) << label;
    }
    EXPECT_EQ(editor_->selectedCaptures()[0], session().current());
    OptionsHolder().setNumber("cmbDeleteCaptures", 2);  // "Don't Delete"
    clickLabel("lblDeleteSelected");
    EXPECT_EQ(session().size(), 4U);
    OptionsHolder().setNumber("cmbDeleteCaptures", 0);
    messages_.answers = {{MessageAnswer::No}, {MessageAnswer::Yes, true}};
    clickLabel("lblDeleteOther");
    EXPECT_EQ(session().size(), 4U);
    ASSERT_TRUE(test::bringForward(*editor_, &list()));
    test::pressKey(VK_DELETE);
    EXPECT_THAT(names(), ElementsAre("a", "b", "c"));
    ASSERT_EQ(messages_.messages.size(), 2U);
    EXPECT_THAT(messages_.messages[1].text, HasSubstr("\"d\""));
    EXPECT_EQ(OptionsHolder().number("cmbDeleteCaptures"), 1);
    clickLabel("lblDeleteOther");
    EXPECT_THAT(names(), ElementsAre("c"));
    EXPECT_EQ(list().GetItemCount(), 1);
    clickLabel("lblDeleteAll");
    EXPECT_EQ(session().size(), 0U);
    EXPECT_EQ(messages_.messages.size(), 2U) << "asked again";
}

// --- files --------------------------------------------------------------------------------------------------------

/// What the shell hands over when files are dropped at a place.
HGLOBAL droppedFiles(const std::vector<fs::path>& paths) {
    std::wstring names;
    for (const fs::path& path : paths) names.append(path.wstring()).push_back(L'\0');
    names.push_back(L'\0');
    HGLOBAL const memory = GlobalAlloc(GHND, sizeof(DROPFILES) + names.size() * sizeof(wchar_t));
    auto* header = static_cast<DROPFILES*>(GlobalLock(memory));
    header->pFiles = sizeof(DROPFILES);
    header->fWide = TRUE;
    std::copy(names.begin(), names.end(), reinterpret_cast<wchar_t*>(header + 1));
    GlobalUnlock(memory);
    return memory;
}

TEST_F(MainEditor, DroppedFilesAreOpenedAndWhatCannotBeIsToldOnce) {
    add({"one", "two"});
    fs::path project = folder() / "two.GMP";
    ASSERT_TRUE(saver_.saveProject(session().all(), project, false));
    session().discardAll();
    const fs::path text = folder() / "notes.txt";
    ASSERT_TRUE(writeFile(text, std::vector<uint8_t>{'h', 'i'}).ok());
    const fs::path missing = folder() / "missing.png";
    const fs::path picture = fs::absolute("samples/article-1280x1024.png");
    messages_.messages.clear();

    EXPECT_TRUE(GetWindowLongW(editor_->GetHWND(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    PostMessageW(editor_->GetHWND(), WM_DROPFILES,
                 reinterpret_cast<WPARAM>(droppedFiles({project, picture, text, missing})), 0);
    ASSERT_TRUE(test::pumpUntil([this] { return messages_.messages.size() == 2; }));
    EXPECT_THAT(names(), ElementsAre("one", "two", "article-1280x1024"));
    for (const Message& message : messages_.messages) EXPECT_EQ(message.caption, "Error");
    for (const char* name : {"missing.png", "notes.txt"}) EXPECT_THAT(messages_.messages[0].text, HasSubstr(name));
    EXPECT_EQ(messages_.messages[1].text, missingDataText);  // of the picture, in which nothing was drawn yet
    for (const CaptureDocument* document : session().all()) EXPECT_FALSE(document->modified());
}

TEST_F(MainEditor, TheNoticeOfAnOpenedPictureWaitsForTheQuestionThatIsOpen) {
    messages_.messages.clear();
    const test::NextModal question([this](wxDialog& dialog) {
        editor_->openFile("samples/article-1280x1024.png");
        for (int round = 0; round < 5; ++round) test::pump();
        EXPECT_TRUE(messages_.messages.empty()) << messages_.messages[0].text;
        wxIdleEvent quiet;
        editor_->ProcessWindowEvent(quiet);
        EXPECT_FALSE(wxTheApp->HasPendingEvents()) << "it would take a processor for as long as the question is open";
        editor_->showRoutine();
        test::pump();
        EXPECT_EQ(GetForegroundWindow(), dialog.GetHWND()) << "the window would hide what it waits for";
        dialog.EndModal(wxID_OK);
    });
    ModalDialog(nullptr, wxID_ANY, "The question").ShowModal();
    EXPECT_TRUE(test::pumpUntil([this] { return messages_.messages.size() == 1; }));
}

TEST_F(MainEditor, TheOpenDialogOffersEveryKind) {
    const fs::path picture = fs::absolute("samples/shop-1920x1080.png");
    std::vector<std::wstring> filters;
    {
        const test::DialogDriver driver(
            {{L"Open Project or File...", [&](HWND dialog) {
                  for (HWND box : test::childrenOf(dialog, L"ComboBox")) {
                      const auto count = SendMessageW(box, CB_GETCOUNT, 0, 0);
                      for (LRESULT i = 0; count == 6 && i < count; ++i) {
                          wchar_t text[200] = {};
                          SendMessageW(box, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
                          filters.emplace_back(text);
                      }
                  }
                  const auto fields = test::childrenOf(dialog, L"Edit");
                  if (fields.empty()) return false;
                  SendMessageW(fields.back(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(picture.c_str()));
                  return test::clickButton(dialog, L"Open");
              }}});
        test::pressKey('O', 0x4000);
    }
    EXPECT_THAT(names(), ElementsAre("shop-1920x1080"));
    EXPECT_THAT(filters,
                ElementsAre(L"All supported files (*.gmp;*.png;*.gif;*.jpg;*.jpeg;*.bmp;)",
                            L"Glimmerpad Project file (*.gmp)", L"Portable Network Graphics (*.png)",
                            L"CompuServe GIF Image (*.gif)", L"JPEG Image File (*.jpg, *.jpeg)", L"Bitmaps (*.bmp)"));
}

// --- the tool bar and the canvas ----------------------------------------------------------------------------------

TEST_F(MainEditor, EveryCommandHasItsButtonAndNeedsWhatItNeeds) {
    for (const MainCommand& command : mainCommands())
        ASSERT_NE(test::find<ToolButton>(*editor_, command.control), nullptr) << command.control;
    ASSERT_TRUE(test::pumpUntil([this] { return !test::find<ToolButton>(*editor_, "btnCopy")->IsEnabled(); }));
    EXPECT_TRUE(test::find<ToolButton>(*editor_, "btnLoadProject")->IsEnabled());
    EXPECT_FALSE(test::find<ToolButton>(*editor_, "btnFirefox")->IsShown());  // no browser is the host
    session().add(grey("one"));
    ASSERT_TRUE(test::pumpUntil([this] { return test::find<ToolButton>(*editor_, "btnCopy")->IsEnabled(); }));
    EXPECT_FALSE(test::find<ToolButton>(*editor_, "tbtnUndo")->IsEnabled());
    // The labels wrap: the panel is as high as all their lines.
    const wxWindow* label = test::findControl(*editor_, "lblThenEdit");
    EXPECT_TRUE(wxRect(label->GetParent()->GetClientSize()).Contains(label->GetRect()));
}

TEST_F(MainEditor, NarrowWindowsFoldTheToolbarIntoTheChevron) {
    editor_->SetSize(editor_->FromDIP(wxSize(1600, 700)));
    test::pump();
    auto* more = test::find<ToolButton>(*editor_, "btnMoreCommands");
    EXPECT_FALSE(more->IsShown());
    EXPECT_TRUE(test::find<ToolButton>(*editor_, "tbtnVote")->IsShown());
    editor_->SetSize(editor_->FromDIP(wxSize(640, 700)));
    test::pump();
    EXPECT_TRUE(more->IsShown());
    EXPECT_FALSE(test::find<ToolButton>(*editor_, "tbtnVote")->IsShown());
    EXPECT_TRUE(test::find<ToolButton>(*editor_, "btnExit")->IsShown());
}

// The canvas's own copy and paste, by way of the system's clipboard.
TEST_F(MainEditor, CopiesAndPastesPixelsAndAnnotationsOfTheCanvas) {
    const TBitmap picture = test::page(200, 150, PixelFormat::Bgra32, 200);
    CaptureDocument& document = session().add(capture(picture.clone().take(), "noise"));
    const Rect area{20, 30, 90, 70};
    document.select(Selection::rectangle(area));
    TEditForm& canvas = *editor_->canvas();
    ASSERT_TRUE(canvas.executeCommand(EditCommand::Copy));
    const Result<TBitmap> copied = pictureFromClipboard();
    ASSERT_TRUE(copied) << copied.message();
    const TBitmap expected = picture.cropped(area).take();
    EXPECT_TRUE(samePixels(*copied, expected));
    EXPECT_TRUE(canvas.canExecute(EditCommand::Paste));
    ASSERT_TRUE(canvas.executeCommand(EditCommand::Cut));
    EXPECT_EQ(document.background().pixel(20, 30), rgb(255, 255, 255));
    EXPECT_EQ(document.background().pixel(19, 30), picture.pixel(19, 30));
    ASSERT_TRUE(canvas.executeCommand(EditCommand::Paste));
    ASSERT_EQ(document.annotations().size(), 1U);
    EXPECT_TRUE(samePixels(*document.annotations()[0].shape.drawing, expected));

    // An annotation goes to another capture with its ink.
    ASSERT_TRUE(canvas.executeCommand(EditCommand::Copy));
    CaptureDocument& other = session().add(grey("other"));
    ASSERT_TRUE(editor_->canvas()->executeCommand(EditCommand::Paste));
    ASSERT_EQ(other.annotations().size(), 1U);
    EXPECT_TRUE(samePixels(*other.annotations()[0].shape.drawing, expected));
}

// --- one command, each way ----------------------------------------------------------------------------------------

struct Ways {
    const char* button;
    uint8_t key;
    int32_t held;
    const char* label;  ///< null: no label presses it
};

/// Each output command through its button, its keys and its label leaves the same behind.
class EveryWay : public MainEditorTest, public testing::WithParamInterface<Ways> {
protected:
    /// What the command has done, as far as it can be told from outside.
    std::string trace() {
        std::string text;
        for (const Message& message : messages_.messages) text += message.caption + ": " + message.text + "\n";
        for (const auto& [target, parameters] : starts_.started)
            text.append("start ").append(target).append(" ").append(parameters).append("\n");
        if (const Result<TBitmap> copied = pictureFromClipboard())
            text += "clipboard " + std::to_string(copied->width()) + " x " + std::to_string(copied->height()) + "\n";
        for (const auto& entry : fs::recursive_directory_iterator(scratch_.path())) {
            if (entry.is_regular_file() && entry.path().extension() != ".ini")
                text += utf8FromPath(entry.path().filename()) + " " + std::to_string(entry.file_size()) + "\n";
        }
        return text;
    }
    void forget() {
        messages_.messages.clear();
        starts_.started.clear();
        for (const fs::path& path : {folder(), work(), externalEditorFolder().take()}) fs::remove_all(path);
        fs::create_directories(folder());
        test::emptyClipboard();
    }
};

TEST_P(EveryWay, LeadsToTheSame) {
    const Ways& command = GetParam();
    if (std::string_view(command.button) == "btnMail") NEEDS_MAIL_PROGRAM();
    const test::MailProgram program(L"mail_recorder", folder());
    OptionsHolder().setNumber("cmbExitAfterSaving", 2);  // "Don't Exit"
    dialogs_.path = folder() / "picture.png";
    add({"first", "second", "third"});
    list().SetItemState(1, wxLIST_STATE_SELECTED, wxLIST_STATE_SELECTED);  // the last two
    test::pump();
    ASSERT_EQ(editor_->selectedCaptures().size(), 2U);

    std::vector<std::pair<std::string, std::function<void()>>> ways = {
        {"the button", [&] { test::click(button(command.button)); }},
        {"the keys", [&] {
             ASSERT_TRUE(test::bringForward(*editor_, &list()));
             test::pressKey(command.key, command.held);
         }}};
    if (command.label != nullptr) ways.emplace_back("the label", [&] { clickLabel(command.label); });
    std::string expected;
    for (const auto& [name, act] : ways) {
        forget();
        act();
        test::pump();
        const std::string left = trace();
        if (expected.empty()) expected = left;
        EXPECT_EQ(left, expected) << "through " << name;
    }
    EXPECT_FALSE(expected.empty()) << "the command did nothing";
    EXPECT_EQ(session().size(), 3U);
    forget();
}

INSTANTIATE_TEST_SUITE_P(
    Output, EveryWay,
    testing::Values(Ways{"btnUpload", VK_F1, 0x4000, "lblThenUpload"}, Ways{"btnPublish", VK_F2, 0x4000, "lblThenSave"},
                    Ways{"btnCopy", VK_F3, 0x4000, "lblThenCopy"}, Ways{"btnMail", VK_F4, 0x4000, "lblThenMail"},
                    Ways{"btnExternalViewer", VK_F5, 0x4000, "lblThenEdit"}, Ways{"btnPrint", 'P', 0x4000, nullptr},
                    Ways{"btnSaveProject", 'S', 0x4000, nullptr}),
    [](const auto& info) { return std::string(info.param.button); });

TEST_F(MainEditor, EveryToolHasItsKey) {
    add({"one"});
    const struct {
        uint8_t key;
        const char* button;
    } tools[] = {{'2', "btnWndSelector"}, {'3', "btnTextShape"},      {'4', "btnTextPen"}, {'5', "btnTextLine"},
                 {'6', "btnText"},        {'8', "btnRectHightlight"}, {'9', "btnLine"},    {'1', "btnPointer"}};
    for (const auto& [key, name] : tools) {
        const ToolButton& pressed = button(name);
        ASSERT_TRUE(test::bringForward(*editor_, &list()));
        test::pressKey(key, 0x8000);
        EXPECT_TRUE(test::pumpUntil([&pressed] { return pressed.down(); })) << name;
        const EditTool byKey = editor_->canvas()->tool();
        button("btnPointer").press();
        test::click(button(name));
        EXPECT_EQ(editor_->canvas()->tool(), byKey) << name;
    }
}

TEST_F(MainEditor, TheKeyboardGoesThroughAllPartsAndTheKeysOfTheCanvasWorkInThem) {
    const auto zoom = [this] { return editor_->canvas()->zoom(); };
    for (const bool floating : {true, false}) {
        OptionsHolder().setOn("chkFloatingToolbar", floating);
        session().discardAll();
        add({"one", "two"});
        ASSERT_TRUE(test::bringForward(*editor_, &list()));
        wxWindow* panels = wxWindow::FindWindowByName("pnlProperties");
        ASSERT_NE(panels, nullptr);
        EXPECT_EQ(wxGetTopLevelParent(panels) != editor_, floating);
        EXPECT_TRUE(editor_->canvas()->GetScreenRect().Contains(panels->GetScreenRect()));
        for (const char* part : {"pnlSelection", "EditForm", "pnlProperties", "tbMain", "lvAnnotations"}) {
            test::pressKey(VK_F6);
            EXPECT_TRUE(wxWindow::FindWindowByName(part)->IsDescendant(wxWindow::FindFocus())) << part << floating;
            test::pressKey(VK_ADD, 0x4000);
            EXPECT_EQ(zoom(), 125) << part << floating;
            test::pressKey('0', 0x4000);
            EXPECT_EQ(zoom(), 100) << part << floating;
        }
        test::pressKey(VK_F6, 0x2000);
        EXPECT_TRUE(test::findControl(*editor_, "tbMain")->IsDescendant(wxWindow::FindFocus())) << floating;
    }
    // What is typed into a name is not for the canvas.
    list().SetFocus();
    test::pressKey(VK_F2);
    test::pressKey(VK_ADD, 0x4000);
    EXPECT_EQ(zoom(), 100);
    test::pressKey(VK_ESCAPE);
}

// --- what comes after the picture ---------------------------------------------------------------------------------

TEST_F(MainEditor, TheToolbarIsThereForTheFirstCommandAndThenAtRest) {
    editor_->Close(true);
    ASSERT_TRUE(test::pumpUntil([] { return pMainEditor == nullptr; }));
    open();
    wxWindow* bar = test::findControl(*editor_, "tbMain");
    saveOptions();
    ASSERT_EQ(bar->GetChildren().size(), 1U) << "the handle; a capture that is saved in silence does not wait for more";
    // A key that comes before the first quiet moment: its dialog may keep that away for long.
    session().add(grey("one"));
    editor_->run(commandOf(EditTool::Pointer));
    EXPECT_GT(bar->GetChildren().size(), mainCommands().size());
    EXPECT_EQ(bar->GetChildren().back()->GetName(), "imgHandle") << "Tab goes to the buttons first";

    editor_->showRoutine();
    test::pump();
    ValidateRect(bar->GetHWND(), nullptr);
    wxIdleEvent quiet;
    editor_->ProcessWindowEvent(quiet);
    EXPECT_FALSE(GetUpdateRect(bar->GetHWND(), nullptr, FALSE)) << "it would be painted for ever";
}

// --- leaving ------------------------------------------------------------------------------------------------------

TEST_F(MainEditor, LeavingAsksOnceNamesWhatIsUnsavedAndSavesItAsAProject) {
    add({"one", "two"});
    session().at(1).markSaved();
    messages_.answers = {{MessageAnswer::Cancel}};
    EXPECT_FALSE(editor_->closeSession());
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_THAT(messages_.messages[0].text, HasSubstr("one"));
    EXPECT_THAT(messages_.messages[0].text, Not(HasSubstr("two")));
    EXPECT_EQ(messages_.messages[0].yes, "&Save all");
    EXPECT_EQ(messages_.messages[0].no, "&Discard");
    for (const fs::path path : {"", "Z:\\proc\\session.gmp"}) {  // given up, and failed
        dialogs_.path = path;
        messages_.answers = {{MessageAnswer::Yes}};
        EXPECT_FALSE(editor_->closeSession());
        EXPECT_TRUE(session().at(0).modified());
        EXPECT_TRUE(editor_->IsShown());
    }
    EXPECT_EQ(session().size(), 2U);
    dialogs_.path = folder() / "session.gmp";
    messages_.answers = {{MessageAnswer::Yes}};
    test::click(button("btnExit"));
    EXPECT_TRUE(session().empty());
    EXPECT_FALSE(editor_->IsShown());
    EXPECT_EQ(editor_->displayState(), DisplayState::Away);
    editor_->showRoutine();
    EXPECT_TRUE(editor_->openFile(utf8FromPath(dialogs_.path)));
    EXPECT_THAT(names(), ElementsAre("one", "two"));
    // A project whose captures moved is left with a question too, and saved under its name.
    messages_.messages.clear();
    dialogs_.path.clear();
    EXPECT_THAT(editor_->GetTitle().utf8_string(), Not(HasSubstr("*")));
    session().move(0, 1);
    messages_.answers = {{MessageAnswer::Yes}};
    EXPECT_TRUE(editor_->closeSession());
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_THAT(messages_.messages[0].text, HasSubstr("session.gmp"));
    ASSERT_TRUE(editor_->openFile(utf8FromPath(folder() / "session.gmp")));
    EXPECT_THAT(names(), ElementsAre("two", "one"));
}

// A hot key, a browser or another start may bring captures while the question is on the screen.
TEST_F(MainEditor, WhatArrivesDuringTheQuestionIsAskedForToo) {
    session().add(grey("old")).markSaved();
    std::vector<std::string> texts;
    const test::AnsweredMessages boxes([&](const Message& message) {
        texts.push_back(message.text);
        if (texts.size() == 1) session().add(grey("arrived"));
        return message.buttons == MessageButtons::YesNoCancel ? MessageAnswer::No : MessageAnswer::Yes;
    });
    EXPECT_TRUE(editor_->closeSession());
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_THAT(texts[0], Not(HasSubstr("arrived")));
    EXPECT_THAT(texts[1], HasSubstr("arrived"));
    EXPECT_TRUE(session().empty());
}

TEST_F(MainEditor, LeavingWithEverythingSavedKeepsToTheAnswer) {
    const auto leave = [this](int choice, std::deque<test::RecordedMessages::Answer> answers) {
        editor_->showRoutine();
        session().add(grey("saved")).markSaved();
        OptionsHolder().setNumber("cmbConfirmExit", choice);
        messages_.messages.clear();
        messages_.answers = std::move(answers);
        SendMessageW(editor_->GetHWND(), WM_CLOSE, 0, 0);
        test::pump();
        const bool left = session().size() == 0;
        session().discardAll();
        return std::pair(left, messages_.messages.size());
    };
    EXPECT_EQ(leave(0, {{MessageAnswer::No}}), std::pair(false, size_t{1}));
    EXPECT_EQ(leave(0, {{MessageAnswer::Yes}}), std::pair(true, size_t{1}));
    EXPECT_EQ(leave(1, {}), std::pair(true, size_t{0}));
    EXPECT_EQ(leave(2, {}), std::pair(false, size_t{0}));
}

TEST_F(MainEditor, AnOutputMayBeTheEndOfTheSession) {
    add({"one"});
    dialogs_.path = folder() / "picture.png";
    messages_.answers = {{MessageAnswer::No}, {MessageAnswer::Yes}};  // open the folder; exit the editor
    button("btnPublish").press();
    ASSERT_EQ(messages_.messages.size(), 2U);
    EXPECT_EQ(messages_.messages[1].caption, "Created successfully");
    EXPECT_EQ(messages_.messages[1].text, "Would you like to exit the editor?");
    EXPECT_FALSE(editor_->IsShown());
    EXPECT_EQ(session().size(), 0U);
}

// The user closes the window while its captures are being written: the file is finished, then the question comes.
TEST_F(MainEditor, ClosingWaitsForASaveThatRuns) {
    session().add(largeCapture("large"));
    test::pump();
    dialogs_.path = folder() / "large.gmp";
    OptionsHolder().setNumber("cmbConfirmExit", 1);  // "Exit"
    bool during = false;
    HWND window = editor_->GetHWND();
    {
        const test::DialogDriver driver({{L"Please wait", [&](HWND) {
                                              during = true;
                                              PostMessageW(window, WM_CLOSE, 0, 0);
                                              return true;
                                          }}});
        button("btnSaveProject").press();
    }
    EXPECT_TRUE(during);
    EXPECT_TRUE(fs::exists(dialogs_.path));
    ASSERT_TRUE(test::pumpUntil([this] { return session().size() == 0; }));
    EXPECT_FALSE(editor_->IsShown());
    EXPECT_TRUE(editor_->openFile(utf8FromPath(dialogs_.path)));
}

// A host shuts the library down while a dialog of a command is up: the command ends in peace before anything goes.
TEST_F(MainEditor, AForcedCloseWaitsForTheCommandThatRuns) {
    add({"one"});
    class Closing : public FixedDialogs {
    public:
        explicit Closing(TMainEditor& editor) : editor_(editor) {}
        std::optional<PictureTarget> askPicture(const fs::path&, const std::string&, PictureFormat) override {
            editor_.Close(true);
            test::pump();
            return PictureTarget{path, format};
        }

    private:
        TMainEditor& editor_;
    } closing(*editor_);
    closing.path = folder() / "late.png";
    setSaveDialogs(&closing);
    button("btnPublish").press();
    EXPECT_TRUE(fs::exists(closing.path));
    EXPECT_TRUE(test::pumpUntil([] { return pMainEditor == nullptr; }));
}

// What an earlier run left behind is offered once, in a box or in a bar; what becomes of it is the user's to say.
TEST_F(MainEditor, WhatWasWorkedOnIsOfferedAtTheNextStart) {
    const auto endAndStart = [this] {
        editor_->Close(true);
        ASSERT_TRUE(test::pumpUntil([] { return pMainEditor == nullptr; }));
        open();
    };
    CaptureDocument& worked = session().add(grey("worked on"));
    ASSERT_TRUE(worked.run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "a note")));
    session().add(grey("untouched"));
    endAndStart();
    editor_->offerRecovered(false);
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_THAT(messages_.messages[0].text, HasSubstr("worked on"));
    EXPECT_THAT(messages_.messages[0].text, Not(HasSubstr("untouched")));
    EXPECT_TRUE(session().empty()) << "later";
    editor_->offerRecovered(false);
    EXPECT_EQ(messages_.messages.size(), 1U) << "once";

    endAndStart();
    editor_->offerRecovered(true);
    test::click(*test::findControl(*editor_, "btnOpenRecovered"));
    ASSERT_TRUE(test::pumpUntil([this] { return editor_->FindWindow("barRecovered") == nullptr; }));
    EXPECT_THAT(names(), ElementsAre("worked on"));
    EXPECT_EQ(session().current()->info().notes, "a note");

    // It was not touched since, but never saved either.
    endAndStart();
    messages_.answers = {{MessageAnswer::Yes}, {MessageAnswer::No}};
    editor_->offerRecovered(false);
    EXPECT_THAT(names(), ElementsAre("worked on"));
    // Leaving with "Discard" is the end of it.
    EXPECT_TRUE(editor_->closeSession());
    endAndStart();
    messages_.messages.clear();
    editor_->offerRecovered(false);
    EXPECT_TRUE(messages_.messages.empty());
}

}  // namespace
}  // namespace glimmer
