// The program controller by itself: what it refuses, what it counts, how it stands towards its window.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "capture/screen_area.h"
#include "common/host_kind.h"
#include "host/program/uProgram.h"
#include "main_window/uMainEditor.h"
#include "output/places/working_folder.h"
#include "output/saver_fixture.h"

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> asked;  // of the host

class Program : public SaverTest {
protected:
    void SetUp() override {
        SaverTest::SetUp();
        OptionsHolder().setOn("chkFirstPromotionIEIntegration", false);
        start(HostKind::Firefox);
    }
    void TearDown() override {
        end();
        setNotifyHandler(nullptr);
        setHostKind(HostKind::Standalone);
        SaverTest::TearDown();
    }
    void start(HostKind kind) {
        asked.clear();
        setHostKind(kind);
        setNotifyHandler(
            [](const std::string& name, const std::string& value) { asked.push_back(name + " " + value); });
        pProgram = std::make_unique<TProgram>("1.0", nullptr,
                                              ProgramSeams{[this] { return memory_; },
                                                           [this](Size size) {
                                                               probed_ = size;
                                                               return room_;
                                                           }});
    }
    static void end() {
        if (!pProgram) return;
        pProgram->closeWindows();
        pProgram.reset();
        EXPECT_TRUE(test::pumpUntil([] { return pMainEditor == nullptr; }));
    }
    /// A page of that size comes from the host.
    static void take(CaptureAction action, Size size = {40, 30}, const std::string& url = "http://a/",
                     const std::string& title = "Page") {
        Delivery delivery;
        delivery.url = url;
        delivery.title = title;
        delivery.picture = test::plain(size.width, size.height, rgb(1, 2, 3));
        delivery.action = action;
        pProgram->HandleCapture(std::move(delivery));
    }
    /// No picture comes, so that the program takes the screen.
    static void takeNothing() {
        Delivery delivery;
        delivery.action = CaptureAction::Load;
        pProgram->HandleCapture(std::move(delivery));
    }
    /// As the button of that name.
    static void press(std::string_view button) {
        for (const MainCommand& command : mainCommands())
            if (button == command.control) pMainEditor->run(command);
    }
    static size_t editors() { return pMainEditor != nullptr ? pMainEditor->session().size() : 0; }
    std::vector<std::string> takeTexts() {
        std::vector<std::string> texts;
        for (const Message& message : messages_.messages) texts.push_back(message.caption + ": " + message.text);
        messages_.messages.clear();
        return texts;
    }

    uint64_t memory_ = uint64_t{20000} * 1024;
    bool room_ = true;
    Size probed_;
};

TEST_F(Program, WithoutRoomForAnEditorTheCaptureIsRefusedAndTheRestStays) {
    const std::string noRoom = "Warning: There is not enough memory to open this screenshot in the editor.";
    const Rect screen = wholeScreen();
    take(CaptureAction::Load, {40, screen.height() + 10});
    EXPECT_EQ(probed_, (Size{screen.width(), screen.height() + 10}));
    EXPECT_THAT(takeTexts(), IsEmpty());

    room_ = false;
    take(CaptureAction::EncodeImage);
    EXPECT_THAT(takeTexts(), ElementsAre(noRoom));
    takeNothing();
    EXPECT_THAT(takeTexts(), ElementsAre(noRoom));
    EXPECT_EQ(probed_, (Size{screen.width(), screen.height()})) << "the one monitor";
    EXPECT_TRUE(pProgram->captureWasEmpty());
    room_ = true;
    memory_ -= 1;
    take(CaptureAction::Save);
    EXPECT_THAT(takeTexts(),
                ElementsAre("Warning: System works at low memory.\nYou need at least 19 MB, but you have only 19 MB.\n"
                            "Try minimizing some applications.",
                            "Warning: System works at low memory.\nIt`s impossible to make more screenshots."));

    EXPECT_EQ(pProgram->captureCount(), 4);
    EXPECT_EQ(pProgram->refusedCount(), 3);
    EXPECT_THAT(pProgram->encodedContent().image(), IsEmpty());
    EXPECT_EQ(pProgram->savedPath(), "");
    ASSERT_EQ(editors(), 1U);
    EXPECT_EQ(pMainEditor->session().current()->background().pixel(39, 20), rgb(1, 2, 3));
    EXPECT_THAT(asked, testing::Each("enableResumeMenu enable"));
    EXPECT_EQ(asked.size(), 4U);
}

TEST_F(Program, TheNextCaptureIsSkippedOnce) {
    pProgram->skipNextCapture();
    take(CaptureAction::Load);
    EXPECT_EQ(pProgram->captureCount(), 0);
    EXPECT_THAT(asked, IsEmpty());
    take(CaptureAction::Load);
    EXPECT_EQ(editors(), 1U);
}

TEST_F(Program, InAHostTheWorkingFolderIsCleanedOnceTheWindowIsThere) {
    fs::create_directories(work());
    for (const char* name : {"ours.png", "theirs.png"}) {
        std::ofstream(work() / name) << "x";
        fs::last_write_time(work() / name, fs::file_time_type::clock::now() - std::chrono::hours(6 * 24));
    }
    ASSERT_TRUE(WorkingFolder(work()).remember(work() / "ours.png").ok());
    OptionsHolder().setOn("chkFolderCleanup", true);
    take(CaptureAction::Load);
    EXPECT_TRUE(test::pumpUntil([this] { return !fs::exists(work() / "ours.png"); }));
    EXPECT_TRUE(fs::exists(work() / "theirs.png"));
}

TEST_F(Program, ACaptureIsNamedAndStampedByItsPage) {
    OptionsHolder().setOn("chkAddURL", true);
    take(CaptureAction::Load);
    OptionsHolder().setOn("chkAddURL", false);
    OptionsHolder().setOn("chkAddTitle", true);
    take(CaptureAction::Load, {40, 30}, "http://b/", "Other");
    std::vector<std::string> seen;
    for (const CaptureDocument* document : pMainEditor->session().all()) {
        seen.push_back(document->info().name);
        for (const TBBShape& stamp : document->annotations()) seen.back() += ", stamped " + stamp.text.text;
    }
    EXPECT_THAT(seen, ElementsAre("Page, stamped http://a/", "Other, stamped Other"));
}

TEST_F(Program, WithoutAPictureThereIsAWhitePageOrTheScreen) {
    OptionsHolder().setOn("chkPlayPhotoSound", false);
    OptionsHolder().setOn("chkAddMouseCursor", false);
    OptionsHolder().setOn("chkStartFromScreen", false);
    takeNothing();
    EXPECT_FALSE(pProgram->captureWasEmpty()) << "there is an editor";
    const TBitmap white = pMainEditor->session().current()->background().clone().take();
    const Rect screen = wholeScreen();
    EXPECT_EQ(white.size(), (Size{screen.width(), screen.height()}));
    for (const Point at : {Point{0, 0}, Point{screen.width() - 1, screen.height() / 2}})
        EXPECT_EQ(white.pixel(at.x, at.y), rgb(255, 255, 255));
    // No such monitor: all of them.
    OptionsHolder().setOn("chkStartFromScreen", true);
    OptionsHolder().setNumber("spnSelectedCaptureSource", 1000);
    takeNothing();
    EXPECT_EQ(pMainEditor->session().current()->size(), white.size());
}

// In a browser: before a page opens in it, the editor may step aside.
TEST_F(Program, TheEditorHidesBeforeAPageOpensAndComesBackForACaptureToEdit) {
    pProgram->integrateIntoIE();
    EXPECT_THAT(takeTexts(), IsEmpty()) << "there is nothing to hide";
    take(CaptureAction::Edit);
    ASSERT_TRUE(pMainEditor->IsShown());
    const auto open = [this](test::RecordedMessages::Answer answer) {
        asked.clear();
        messages_.answers = {answer};
        press("tbtnTweet");
        return asked;
    };
    const std::string page = "openURL https://www.glimmerpad.example/tweet.htm";
    EXPECT_THAT(open({MessageAnswer::No}), ElementsAre(page));
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(messages_.messages[0].caption, "Hiding Vistrane");
    EXPECT_TRUE(pMainEditor->IsShown());
    EXPECT_THAT(open({MessageAnswer::Yes, true}), ElementsAre("enableResumeMenu enable", page));
    EXPECT_FALSE(pMainEditor->IsShown());
    EXPECT_TRUE(pProgram->hidden());

    take(CaptureAction::Load);
    EXPECT_FALSE(pMainEditor->IsShown());
    take(CaptureAction::Edit);
    EXPECT_TRUE(pMainEditor->IsShown());
    EXPECT_EQ(editors(), 3U);
    messages_.messages.clear();
    open({MessageAnswer::No});
    EXPECT_THAT(takeTexts(), IsEmpty()) << "the answer was kept";
    EXPECT_FALSE(pMainEditor->IsShown());
    pProgram->resumeEditing();
    EXPECT_TRUE(pMainEditor->IsShown());
    take(CaptureAction::Load);
    EXPECT_FALSE(pProgram->hidden());

    // While a command of the window runs, it is left alone.
    pMainEditor->Hide();
    pMainEditor->setDisplayState(DisplayState::Held);
    take(CaptureAction::Edit);
    EXPECT_FALSE(pMainEditor->IsShown());
    EXPECT_EQ(editors(), 5U);
}

TEST_F(Program, OptionsThatCannotBeShownLeaveNothingBehind) {
    setNotifyHandler([](const std::string& name, const std::string& value) {
        asked.push_back(name + " " + value);
        if (value == "true") throw std::bad_alloc();
    });
    // The second time is like the first: nothing counts as open.
    for (int time = 0; time < 2; ++time) EXPECT_THROW(pProgram->showOptions(), std::bad_alloc);
    EXPECT_EQ(asked.size(), 2U);
}

// Put away by its own button, in a host: what comes in the background leaves it there.
TEST_F(Program, TheEditorThatWasPutAwayComesBackForACaptureToEdit) {
    take(CaptureAction::Edit);
    press("btnFirefox");
    EXPECT_TRUE(pProgram->hidden());
    take(CaptureAction::Load);
    EXPECT_FALSE(pMainEditor->IsShown());
    take(CaptureAction::Edit);
    EXPECT_TRUE(pMainEditor->IsShown());
    EXPECT_FALSE(pProgram->hidden());
}

TEST_F(Program, OnItsOwnItOpensPagesItselfAndStaysInTheBackground) {
    end();
    start(HostKind::Standalone);
    take(CaptureAction::Load);
    EXPECT_FALSE(pMainEditor->IsShown());
    take(CaptureAction::Edit);
    EXPECT_TRUE(pMainEditor->IsShown());
    press("tbtnVote");
    EXPECT_TRUE(pMainEditor->IsShown());
    EXPECT_THAT(starts_.started,
                ElementsAre(std::pair<std::string, std::string>("https://www.glimmerpad.example/vote-fx.htm", "")));
    EXPECT_THAT(takeTexts(), IsEmpty());
    EXPECT_THAT(asked, IsEmpty());
}

}  // namespace
}  // namespace glimmer
