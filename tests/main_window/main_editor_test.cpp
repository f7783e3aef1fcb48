#include <wx/statusbr.h>

#include <chrono>

#include "editor/commands/add_annotation.h"
#include "editor/commands/set_info.h"
#include "imaging/clipboard.h"
#include "main_editor_fixture.h"
#include "main_window/capture_list.h"
#include "main_window/main_toolbar.h"

namespace glimmer {
namespace {

using test::find;
using test::pumpUntil;

using MainEditor = MainEditorTest;

TEST_F(MainEditor, EveryCommandHasItsButtonAndNeedsWhatItNeeds) {
    for (const MainCommand& command : mainCommands()) {
        auto* button = find<ToolButton>(*editor_, command.control);
        ASSERT_NE(button, nullptr) << command.control;
        EXPECT_EQ(button->caption().ToStdString(), command.caption);
    }
    ASSERT_TRUE(pumpUntil([this] { return !find<ToolButton>(*editor_, "btnCopy")->IsEnabled(); }));
    EXPECT_TRUE(find<ToolButton>(*editor_, "btnLoadProject")->IsEnabled());
    EXPECT_FALSE(find<ToolButton>(*editor_, "btnFirefox")->IsShown());  // no browser is the host
    editor_->addEditor(grey("one"));
    ASSERT_TRUE(pumpUntil([this] { return find<ToolButton>(*editor_, "btnCopy")->IsEnabled(); }));
    EXPECT_FALSE(find<ToolButton>(*editor_, "tbtnUndo")->IsEnabled());
    // The labels wrap: the panel is as high as all their lines.
    const wxWindow* label = test::findControl(*editor_, "lblThenEdit");
    EXPECT_TRUE(wxRect(label->GetParent()->GetClientSize()).Contains(label->GetRect()));
}

TEST_F(MainEditor, TheThumbnailWaitsUntilTheCaptureRests) {
    CaptureDocument& capture = editor_->addEditor(grey("one"));
    const auto red = [this] {
        const wxImage thumbnail = list().GetImageList(wxIMAGE_LIST_NORMAL)->GetBitmap(0).ConvertToImage();
        return static_cast<int>(thumbnail.GetRed(thumbnail.GetWidth() / 2, thumbnail.GetHeight() / 2));
    };
    ASSERT_TRUE(pumpUntil([&red] { return red() == 240; }));
    TBBShape shape;
    shape.shape.settings.kind = ShapeKind::FilledRectangle;
    shape.shape.settings.shapeColour = rgb(0, 0, 255);
    shape.shape.settings.opacity = 100;
    shape.shape.rectangle = {0, 0, 300, 200};
    const auto changed = std::chrono::steady_clock::now();
    ASSERT_TRUE(capture.run(std::make_unique<AddAnnotation>(shape)).ok());
    ASSERT_TRUE(pumpUntil([&red] { return red() == 0; }));
    EXPECT_GE(std::chrono::steady_clock::now() - changed, std::chrono::milliseconds(400));
}

TEST_F(MainEditor, SelectsThroughLabels) {
    for (const char* name : {"a", "b", "c", "d"}) editor_->addEditor(grey(name));
    EXPECT_EQ(editor_->currentEditor()->info().name, "d");
    EXPECT_EQ(editor_->selectedEditors().size(), 1U);
    clickLabel("lblSelectAll");
    EXPECT_EQ(editor_->selectedEditors().size(), 4U);
    clickLabel("lblSelectOther");
    EXPECT_EQ(editor_->selectedEditors().size(), 3U);
    clickLabel("lblSelectCurrent");
    ASSERT_EQ(editor_->selectedEditors().size(), 1U);
    EXPECT_EQ(editor_->selectedEditors()[0]->info().name, "d");
}

TEST_F(MainEditor, LeavingAsksOnceAndNamesWhatIsUnsaved) {
    editor_->addEditor(grey("first"));
    editor_->addEditor(grey("second")).markSaved();
    messages_.answers = {{MessageAnswer::Cancel}, {MessageAnswer::No}};
    EXPECT_FALSE(editor_->closeSession());
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_NE(messages_.messages[0].text.find("first"), std::string::npos);
    EXPECT_EQ(messages_.messages[0].text.find("second"), std::string::npos);
    EXPECT_EQ(editor_->editorCount(), 2U);
    EXPECT_TRUE(editor_->closeSession());
    EXPECT_EQ(editor_->editorCount(), 0U);
    EXPECT_FALSE(editor_->IsShown());
    EXPECT_EQ(editor_->displayState(), DisplayState::Away);
}

TEST_F(MainEditor, NarrowWindowsFoldTheToolbarIntoTheChevron) {
    editor_->SetSize(editor_->FromDIP(wxSize(1600, 700)));
    test::pump();
    auto* more = find<ToolButton>(*editor_, "btnMoreCommands");
    EXPECT_FALSE(more->IsShown());
    EXPECT_TRUE(find<ToolButton>(*editor_, "tbtnVote")->IsShown());
    editor_->SetSize(editor_->FromDIP(wxSize(640, 700)));
    test::pump();
    EXPECT_TRUE(more->IsShown());
    EXPECT_FALSE(find<ToolButton>(*editor_, "tbtnVote")->IsShown());
    EXPECT_TRUE(find<ToolButton>(*editor_, "btnExit")->IsShown());
}

// The canvas's own copy and paste, by way of the system's clipboard.
TEST_F(MainEditor, CopiesAndPastesPixelsAndAnnotationsOfTheCanvas) {
    TBitmap picture = test::noise(200, 150, PixelFormat::Bgra32, 5);
    for (int32_t y = 0; y < picture.height(); ++y)
        for (int32_t x = 0; x < picture.width(); ++x) picture.row(y)[static_cast<size_t>(x) * 4 + 3] = 255;
    CaptureDocument& document = editor_->addEditor(capture(picture.clone().take(), "noise"));
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
    CaptureDocument& other = editor_->addEditor(grey("other"));
    ASSERT_TRUE(editor_->canvas()->executeCommand(EditCommand::Paste));
    ASSERT_EQ(other.annotations().size(), 1U);
    EXPECT_TRUE(samePixels(*other.annotations()[0].shape.drawing, expected));
}

// A host that shuts down asks nobody: what the user has worked on is there at the next start, the rest is not.
TEST_F(MainEditor, AnEndWithoutAQuestionKeepsWhatWasWorkedOn) {
    const auto endAndStart = [this] {
        editor_->Close(true);
        ASSERT_TRUE(pumpUntil([] { return pMainEditor == nullptr; }));
        open();
    };
    CaptureDocument& worked = editor_->addEditor(grey("worked on"));
    ASSERT_TRUE(worked.run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "a note")));
    editor_->addEditor(grey("untouched"));
    CaptureDocument& saved = editor_->addEditor(grey("saved"));
    ASSERT_TRUE(saved.run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "another")));
    saved.markSaved();
    endAndStart();

    editor_->offerRecovered(false);
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_NE(messages_.messages[0].text.find("worked on"), std::string::npos);
    EXPECT_EQ(messages_.messages[0].text.find("untouched"), std::string::npos);
    EXPECT_EQ(messages_.messages[0].text.find("\xE2\x80\xA2 saved"), std::string::npos);
    EXPECT_EQ(editor_->editorCount(), 0U) << "later";
    editor_->offerRecovered(false);
    EXPECT_EQ(messages_.messages.size(), 1U) << "once";

    endAndStart();
    messages_.answers = {{MessageAnswer::Yes}};
    editor_->offerRecovered(false);
    EXPECT_EQ(names(), (std::vector<std::string>{"worked on"}));
    EXPECT_EQ(editor_->currentEditor()->info().notes, "a note");
    EXPECT_TRUE(editor_->currentEditor()->modified());

    // It was not touched since, but never saved either.
    endAndStart();
    editor_->offerRecovered(true);
    test::click(*test::findControl(*editor_, "btnOpenRecovered"));
    ASSERT_TRUE(pumpUntil([this] { return editor_->FindWindow("barRecovered") == nullptr; }));
    EXPECT_EQ(names(), (std::vector<std::string>{"worked on"}));

    // Leaving with "Discard" is the end of it.
    messages_.answers = {{MessageAnswer::No}};
    EXPECT_TRUE(editor_->closeSession());
    endAndStart();
    messages_.messages.clear();
    editor_->offerRecovered(false);
    EXPECT_TRUE(messages_.messages.empty());
}

}  // namespace
}  // namespace glimmer
