#include <gmock/gmock.h>
#include <wx/msw/wrapwin.h>
#include <wx/timer.h>

#include "editor/document/selection.h"
#include "main_editor_fixture.h"
#include "main_window/output_commands.h"
#include "support/shy_memory.h"

// One canvas serves all captures: nobody can tell, and what the user is in the middle of ends where it began.

namespace glimmer {
namespace {

using testing::ElementsAre;

class CanvasSwitch : public MainEditorTest {
protected:
    [[nodiscard]] std::string shown() const { return editor_->canvas()->document().info().name; }
    [[nodiscard]] wxWindow& page() const { return *test::findControl(*editor_->canvas(), "pbScreen"); }
    void goTo(long item) const {
        list().SetItemState(item, wxLIST_STATE_FOCUSED | wxLIST_STATE_SELECTED,
                            wxLIST_STATE_FOCUSED | wxLIST_STATE_SELECTED);
        test::pump();
    }
    [[nodiscard]] std::vector<long> selected() const {
        std::vector<long> all;
        for (long i = 0; i < list().GetItemCount(); ++i)
            if (list().GetItemState(i, wxLIST_STATE_SELECTED) != 0) all.push_back(i);
        return all;
    }
};

TEST_F(CanvasSwitch, EachCaptureKeepsItsZoomItsPlaceAndItsTool) {
    session().add(grey("long", {900, 6000}));
    session().add(grey("wide", {4000, 900}));
    session().add(grey("small", {40, 30}));
    const struct {
        const char* tool;
        int32_t zoom;
        EditTool held;
        bool atEnd;
    } cases[] = {{"btnText", 200, EditTool::Text, true},
                 {"btnLine", 75, EditTool::Line, true},
                 {"btnPointer", 400, EditTool::Pointer, false}};
    std::vector<Rect> places;
    for (long i = 0; i < 3; ++i) {
        goTo(i);
        EXPECT_EQ(editor_->canvas()->zoom(), 100) << "as each begins";
        EXPECT_EQ(editor_->canvas()->tool(), EditTool::Pointer);
        button(cases[i].tool).press();
        editor_->canvas()->zoomTo(cases[i].zoom);
        ASSERT_TRUE(test::bringForward(*editor_, &page()));
        if (cases[i].atEnd) test::pressKey(VK_END, 0x4000);  // to the corner
        places.push_back(editor_->canvas()->inView({0, 0, 10, 10}));
    }
    EXPECT_LT(places[0].top, -8000);
    EXPECT_LT(places[1].left, -1000);
    for (const long i : {1, 0, 2, 0, 1}) {
        goTo(i);
        EXPECT_EQ(editor_->canvas()->inView({0, 0, 10, 10}), places[static_cast<size_t>(i)]) << i;
        EXPECT_EQ(editor_->canvas()->zoom(), cases[i].zoom);
        EXPECT_EQ(editor_->canvas()->tool(), cases[i].held);
        EXPECT_TRUE(button(cases[i].tool).down()) << cases[i].tool;
    }
}

// A capture that arrives in the middle of something is listed at once and shown after it.
TEST_F(CanvasSwitch, WhatTheUserIsInTheMiddleOfEndsOnItsOwnCapture) {
    bool arrived = false;
    const auto arrive = [this, &arrived] {
        arrived = true;
        CaptureDocument& second = session().add(grey("second"));
        EXPECT_EQ(shown(), "first");
        EXPECT_THAT(selected(), ElementsAre(1));
        // What a host wants done with it is done with it.
        dialogs_.path = folder() / "second.png";
        editor_->output(saveCaptures, {&second});
        EXPECT_EQ(dialogs_.proposed, "second");
        EXPECT_EQ(shown(), "first");
    };
    const auto inColourDialog = [&] {
        editor_->canvas()->document().select(Selection::rectangle({10, 10, 20, 20}));
        editor_->canvas()->executeCommand(EditCommand::Fill);
        wxTimer robot;  // inside the loop of a dialog of the system
        robot.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
            HWND dialog = GetActiveWindow();
            wchar_t name[16] = {};
            GetClassNameW(dialog, name, 16);
            if (std::wstring_view(name) != L"#32770" || IsWindowVisible(dialog) == FALSE) return;
            robot.Stop();
            arrive();
            PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        });
        robot.Start(20);
        for (wxWindow* child : editor_->canvas()->GetChildren())
            if (child->GetName() == "ColorPicker") test::click(*test::findControl(*child, "btnMoreColors"));
        EXPECT_TRUE(test::pumpUntil([&] { return arrived; }));
    };
    const auto inMessage = [&] {
        std::string text;
        const test::AnsweredMessages boxes([&](const Message& message) {
            if (message.buttons == MessageButtons::YesNo) return MessageAnswer::No;  // "exit?" after the output
            text = message.text;
            arrive();
            return MessageAnswer::Ok;
        });
        editor_->canvas()->document().select(Selection::polygon({{10, 10}, {15, 10}, {20, 10}}));
        editor_->canvas()->executeCommand(EditCommand::Blur);
        EXPECT_EQ(text, "The selection lies outside the picture.");
        EXPECT_EQ(shown(), "first");
        editor_->canvas()->document().select(Selection::rectangle({10, 10, 20, 20}));
        editor_->canvas()->executeCommand(EditCommand::Invert);
    };
    const auto inDrag = [&] {
        button("btnRectHightlight").press();
        const Rect from = editor_->canvas()->inView({10, 10, 11, 11});
        test::mousePress(page(), from.left, from.top);
        test::mouseMove(page(), from.left + 30, from.top + 30);
        arrive();
        test::mouseRelease(page(), from.left + 30, from.top + 30);
        EXPECT_EQ(editor_->canvas()->document().annotations().size(), 1U);
    };
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"the system's part of the colour picker", inColourDialog}, {"a message", inMessage}, {"a drag", inDrag}};
    for (const auto& [what, run] : cases) {
        SCOPED_TRACE(what);
        arrived = false;
        CaptureDocument& first = session().add(grey("first"));
        test::pump();
        run();
        EXPECT_TRUE(arrived);
        EXPECT_TRUE(test::pumpUntil([this] { return shown() == "second"; }));
        EXPECT_EQ(session().current()->info().name, "second");
        EXPECT_TRUE(first.touched());
        EXPECT_FALSE(session().current()->touched());
        session().discardAll();
    }
}

TEST_F(CanvasSwitch, WantOfMemoryIsToldOnceAndPaintedWithoutAMessage) {
    setPixelAllocator(test::ShyMemory::make);
    add({"one", "two"});
    test::ShyMemory::refused = true;
    goTo(0);
    EXPECT_EQ(shown(), "two");
    EXPECT_THAT(selected(), ElementsAre(1));
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(messages_.messages[0].text, "There is not enough memory to show \"one\".");
    editor_->canvas()->Refresh();
    editor_->canvas()->Update();  // whatever it has no memory for
    test::pump();
    EXPECT_EQ(messages_.messages.size(), 1U);
    test::ShyMemory::refused = false;
    goTo(0);
    EXPECT_EQ(shown(), "one");
}

}  // namespace
}  // namespace glimmer
