#include <gmock/gmock.h>
#include <windows.h>

#include "common/wide_text.h"
#include "editor/annotations/styles.h"
#include "imaging/clipboard.h"
#include "imaging/clipboard_formats.h"
#include "imaging/picture_file.h"
#include "output/files/editable_png.h"
#include "output/picture/output_picture.h"
#include "output/places/working_folder.h"
#include "output/ways/mail.h"
#include "saver_fixture.h"
#include "support/child_process.h"
#include "support/windows/kept_clipboard.h"
#include "support/windows/mail_program.h"
#include "support/windows/native_tool.h"

// What the saver hands to other programs: the clipboard, the mail program, a web page.

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using test::MailProgram;
using testing::HasSubstr;

// --- clipboard ----------------------------------------------------------------------------------------------------

class ClipboardOutput : public SaverTest {
protected:
    void TearDown() override {
        test::emptyClipboard();
        SaverTest::TearDown();
    }
    /// What another process finds there.
    void readByAnother() {
        fs::create_directories(folder());
        test::ChildProcess other(test::testProgram("saver_helper"), {"clipboard", folder()});
        ASSERT_TRUE(test::pumpUntil([&other] { return !other.running(); }));
        ASSERT_TRUE(fs::exists(folder() / "done"));
    }
    [[nodiscard]] Result<TBitmap> found(const char* name) const {
        const auto data = readFile(folder() / name, 1U << 26U);
        if (!data) return data.failure();
        return std::string(name) == "png" ? readPicture(*data) : pictureFromDib(*data);
    }
};

TEST_F(ClipboardOutput, AnotherProcessGetsTheSamePixels) {
    TBitmap picture = test::page(123, 77, PixelFormat::Bgra32, 40);
    for (int32_t x = 0; x < 100; ++x) picture.row(50)[static_cast<size_t>(x) * 4 + 3] = static_cast<uint8_t>(x * 2);
    const auto document = capture(std::move(picture), "copied");
    annotate(*document, "");
    const TBitmap expected = outputPicture(*document, silent_.textPainter()).take();
    CaptureDocument* const all[] = {document.get()};
    ASSERT_TRUE(saver_.copyToClipboard(all));
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(messages_.messages[0].caption, "Copied successfully");
    EXPECT_EQ(messages_.messages[0].text,
              "The image has been copied into windows Clipboard.\r\nNow you can paste it using standard \"Ctrl+V\" key "
              "combination.");
    DWORD owner = 0;
    GetWindowThreadProcessId(GetClipboardOwner(), &owner);
    EXPECT_EQ(owner, GetCurrentProcessId());
    readByAnother();
    for (const char* name : {"png", "dibv5"}) {
        const Result<TBitmap> read = found(name);
        ASSERT_TRUE(read.ok()) << name << ": " << read.message();
        EXPECT_TRUE(samePixels(*read, expected)) << name;
    }
    const Result<TBitmap> dib = found("dib");
    ASSERT_TRUE(dib.ok()) << dib.message();
    EXPECT_TRUE(samePixels(flattenedOnWhite(*dib).take(), flattenedOnWhite(expected).take()));
    // And back, from this process.
    EXPECT_TRUE(samePixels(pictureFromClipboard().take(), expected));
}

TEST_F(ClipboardOutput, SeveralLieSideBySide) {
    const auto red = capture(test::noise(30, 50, PixelFormat::Bgr24, 1), "red");
    const auto blue = capture(test::noise(20, 10, PixelFormat::Bgr24, 2), "blue");
    CaptureDocument* const all[] = {red.get(), blue.get()};
    messages_.answers = {{MessageAnswer::Ok, true}};
    ASSERT_TRUE(saver_.copyToClipboard(all));
    readByAnother();
    const TBitmap joined = found("png").take();
    ASSERT_EQ(joined.size(), (Size{30 + 40 + 20, 50}));
    EXPECT_TRUE(samePixels(joined.cropped({0, 0, 30, 50}).take(), red->background()));
    EXPECT_TRUE(samePixels(joined.cropped({70, 0, 90, 10}).take(), blue->background()));
    EXPECT_EQ(joined.pixel(50, 25), rgb(255, 255, 255));
    ASSERT_TRUE(saver_.copyToClipboard(all));
    EXPECT_EQ(messages_.messages.size(), 1U) << "the notice came again";
}

TEST_F(ClipboardOutput, AClipboardInUseIsReported) {
    const auto document = capture(test::page(30, 20, PixelFormat::Bgr24, 4), "refused");
    CaptureDocument* const all[] = {document.get()};
    // Somebody else has it open and does not let go.
    HANDLE const ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE const enough = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread holder([&] {
        HWND window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        EXPECT_NE(OpenClipboard(window), FALSE);
        SetEvent(ready);
        WaitForSingleObject(enough, INFINITE);
        CloseClipboard();
        DestroyWindow(window);
    });
    WaitForSingleObject(ready, INFINITE);
    EXPECT_FALSE(saver_.copyToClipboard(all));
    SetEvent(enough);
    holder.join();
    CloseHandle(ready);
    CloseHandle(enough);
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(messages_.messages[0].caption, "Error");
    EXPECT_THAT(messages_.messages[0].text, HasSubstr("in use by another program"));
}

// --- programs ------------------------------------------------------------------------------------------------------

// A document may lie beside a program that bears the name of one of the system's.
TEST_F(SaverTest, ProgramsBesideADocumentAreNotStarted) {
    setShellStart(nullptr);
    fs::copy_file(test::testProgram("saver_helper"), folder() / "planted.exe");
    const fs::path before = fs::current_path();
    fs::current_path(folder());
    EXPECT_FALSE(shellStart().open("planted.exe", ""));
    EXPECT_FALSE(shellStart().open("planted", ""));
    fs::current_path(before);
}

// --- mail ---------------------------------------------------------------------------------------------------------

class Mailing : public SaverTest {
protected:
    void SetUp() override {
        NEEDS_MAIL_PROGRAM();
        SaverTest::SetUp();
        for (const char* name : {"first", "zweite \xC3\xA4 \xE6\x97\xA5"}) {
            documents_.push_back(capture(test::page(40, 30, PixelFormat::Bgr24, 5), name));
            all_.push_back(documents_.back().get());
        }
    }
    [[nodiscard]] std::string record() const {
        const auto bytes = readFile(folder() / "record", 1U << 20U);
        return bytes ? std::string(bytes->begin(), bytes->end()) : "nothing was sent";
    }
    [[nodiscard]] fs::path mail() const { return work() / "mail"; }

    std::vector<std::unique_ptr<CaptureDocument>> documents_;
    std::vector<CaptureDocument*> all_;
};

TEST_F(Mailing, TheMailProgramGetsTheFilesWithTheirNames) {
    const MailProgram program(L"mail_recorder", folder());
    ASSERT_TRUE(saver_.sendByMail(all_));
    EXPECT_EQ(record(), "MAPISendMailW\nsubject Screenshots\nnote " + mailFooter() +
                            "\nflags 9\nfile first.png\nfile zweite "
                            "\xC3\xA4 \xE6\x97\xA5.png\n");
    EXPECT_THAT(mailFooter(), testing::MatchesRegex("\r\n\r\n\r\n.* - Free screenshots by Vistrane\\."));
    const auto attached = readFile(folder() / "2.attachment", 1U << 20U);
    ASSERT_TRUE(attached.ok());
    EXPECT_TRUE(samePixels(readPicture(*attached).take(), all_[1]->background()));
    EXPECT_EQ(messages_.messages.size(), 0U);
    // The mail program may fetch them later.
    EXPECT_EQ(entriesOf(mail()), 2U);
}

// One that knows only the old entry point finds the files by names that its code page has.
TEST_F(Mailing, AnOldMailProgramGetsTheFilesToo) {
    const MailProgram program(L"mail_recorder_ansi", folder());
    ASSERT_TRUE(saver_.sendByMail(all_));
    EXPECT_THAT(record(), HasSubstr("MAPISendMail\nsubject Screenshots\n"));
    EXPECT_THAT(record(), HasSubstr("file first.png\n"));
    for (const char* name : {"1.attachment", "2.attachment"}) EXPECT_TRUE(fs::exists(folder() / name)) << name;
}

// Whoever gets the file must not find what was covered, unless the user wants it so. What is saved is not asked about.
TEST_F(Mailing, WhatIsCoveredIsAskedAboutAndStaysCoveredInAFlatFile) {
    const MailProgram program(L"mail_recorder", folder());
    const auto draw = [this](ShapeKind kind, int32_t opacity, bool alone) {
        TBBShape shape(predefinedStyles()[0], {0, 0, 3, 2});
        shape.shape.settings.kind = kind;
        shape.shape.settings.opacity = opacity;
        if (alone) shape.text.settings.visible = shape.line.settings.visible = shape.number.settings.visible = false;
        ASSERT_TRUE(all_[0]->run(std::make_unique<AddAnnotation>(std::move(shape))));
    };
    const auto editable = [this] {
        const auto file = readFile(folder() / "1.attachment", 1U << 20U);
        return readEditablePng(*file)->editable;
    };
    draw(ShapeKind::FilledRectangle, 46, false);
    draw(ShapeKind::Rectangle, 100, true);
    ASSERT_TRUE(saver_.sendByMail(all_));
    EXPECT_TRUE(messages_.messages.empty()) << "an ordinary callout covers nothing";
    EXPECT_TRUE(editable());
    draw(ShapeKind::FilledRectangle, 46, true);  // a highlight
    EXPECT_FALSE(saver_.sendByMail(all_)) << "the user closes the question";
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(messages_.messages[0].yes, "Send &flat");
    messages_.answers = {{MessageAnswer::No, true}};
    ASSERT_TRUE(saver_.sendByMail(all_));
    EXPECT_TRUE(editable());
    EXPECT_EQ(OptionsHolder().number("cmbSendCovered"), 2);
    messages_.messages.clear();
    ASSERT_TRUE(saver_.publish(all_));
    EXPECT_TRUE(messages_.messages.empty()) << "the answer is remembered";
    OptionsHolder().setNumber("cmbSendCovered", 1);
    ASSERT_TRUE(saver_.sendByMail(all_));
    EXPECT_FALSE(editable());
    all_[0]->undo();
    draw(ShapeKind::FilledEllipse, 100, false);
    ASSERT_TRUE(saver_.sendByMail(all_));
    EXPECT_FALSE(editable());
    dialogs_.path = folder() / "saved.png";
    ASSERT_TRUE(saver_.savePicture(*all_[0], SaveMode::Interactive));
    EXPECT_TRUE(readEditablePng(*readFile(dialogs_.path, 1U << 20U))->editable) << "saving stays as it is";
}

TEST_F(Mailing, AUserWhoGivesUpIsNotTroubled) {
    const MailProgram program(L"mail_recorder", folder(), 1);  // MAPI_E_USER_ABORT
    EXPECT_FALSE(saver_.sendByMail(all_));
    EXPECT_TRUE(messages_.messages.empty());
    EXPECT_TRUE(starts_.started.empty());
}

TEST_F(Mailing, WithoutAMailProgramTheFilesAreShown) {
    const struct {
        const wchar_t* library;
        int answer;
        const char* says;
    } cases[] = {{L"", 0, "No e-mail program is installed"}, {L"mail_recorder", 2, "did not take the files"}};
    for (const auto& one : cases) {
        messages_.messages.clear();
        starts_.started.clear();
        const MailProgram program(one.library, folder(), one.answer);
        EXPECT_FALSE(saver_.sendByMail(all_));
        ASSERT_EQ(messages_.messages.size(), 1U);
        EXPECT_EQ(messages_.messages[0].caption, "Error");
        EXPECT_THAT(messages_.messages[0].text, HasSubstr(one.says));
        EXPECT_THAT(messages_.messages[0].text, HasSubstr(utf8FromPath(mail())));
        EXPECT_THAT(starts_.started,
                    testing::ElementsAre(std::pair<std::string, std::string>(utf8FromPath(mail()), "")));
    }
    EXPECT_EQ(entriesOf(mail()), 4U);
}

TEST_F(Mailing, TheEditorGoesOnWhileTheUserWritesTheMessage) {
    const MailProgram program(L"mail_recorder", folder(), 2);  // and then it fails
    HANDLE const sent = CreateEventW(nullptr, TRUE, FALSE, L"Glimmerpad test: sent");
    SetEnvironmentVariableW(L"GLIMMER_MAIL_WAIT", L"Glimmerpad test: sent");
    EXPECT_TRUE(saver_.sendByMail(all_));
    EXPECT_TRUE(mailIsOpen());
    EXPECT_FALSE(fs::exists(folder() / "record"));
    EXPECT_TRUE(messages_.messages.empty());
    // A second one says that it waits.
    EXPECT_TRUE(saver_.sendByMail(all_));
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_THAT(messages_.messages[0].text, HasSubstr("the message before"));
    SetEvent(sent);
    ASSERT_TRUE(test::pumpUntil([this] { return messages_.messages.size() == 3; })) << "both failures are told";
    EXPECT_FALSE(mailIsOpen());
    EXPECT_THAT(messages_.messages[2].text, HasSubstr("did not take the files"));
    EXPECT_EQ(starts_.started.size(), 2U);
    SetEnvironmentVariableW(L"GLIMMER_MAIL_WAIT", nullptr);
    CloseHandle(sent);
}

// A week later the next e-mail removes what the last ones left, and nothing that is somebody else's.
TEST_F(Mailing, OldFilesOfTheProgramGoAtTheNextMail) {
    const MailProgram program(L"mail_recorder", folder());
    ASSERT_TRUE(saver_.sendByMail(all_));
    const auto makeOld = [](const fs::path& path) {
        fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(24 * 8));
    };
    const fs::path users = mail() / "holiday.png";
    ASSERT_TRUE(writeFile(users, std::vector<uint8_t>(3)).ok());
    makeOld(users);
    makeOld(mail() / "first.png");
    ASSERT_TRUE(WorkingFolder(work()).remember(mail() / "first.png").ok());
    CaptureDocument* const next[] = {all_[1]};
    ASSERT_TRUE(saver_.sendByMail(next));
    EXPECT_FALSE(fs::exists(mail() / "first.png"));
    EXPECT_TRUE(fs::exists(users));
    EXPECT_EQ(entriesOf(mail()), 3U);
}

// --- page ---------------------------------------------------------------------------------------------------------

TEST_F(SaverTest, ThePageIsValidHtml) {
    const auto plain = capture(test::page(60, 40, PixelFormat::Bgr24, 5), "plain");
    const auto hostile = capture(test::page(100, 90, PixelFormat::Bgr24, 5), "\"><script>alert(1)</script> & {areas}");
    annotate(*hostile, "it's \"quoted\" <b>&amp;</b> \\ ');alert('x');//\nsecond line");
    CaptureDocument* const all[] = {plain.get(), hostile.get()};
    dialogs_.path = folder() / pathFromUtf8("my \xC3\xA9 page.html");
    ASSERT_EQ(saver_.exportPage(all), dialogs_.path);
    // Its code would be 1 for warnings and 2 for errors.
    test::expectTool("tidy -quiet -errors -utf8 --doctype html5 " + test::quotedForTool(dialogs_.path));
    // What a browser would make of it: the names of the pictures that it fetches, and the text of the link.
    test::expectTool(
        "cd " + test::quotedForTool(folder()) +
            " && python3 -c \"\n"
            "import html.parser, os, urllib.parse\n"
            "class P(html.parser.HTMLParser):\n"
            "    def handle_starttag(s, t, a):\n"
            "        a = dict(a)\n"
            "        if t == 'img': print('img', os.path.getsize(urllib.parse.unquote(a['src'])) > 0, a['alt'])\n"
            "        if t == 'area': print('area', a['coords'], a['alt'].replace('\\n', '|'))\n"
            "        if t == 'script': raise SystemExit('a script')\n"
            "P().feed(open('my \xC3\xA9 page.html', encoding='utf-8').read())\"",
        {"img True plain", "img True \"><script>alert(1)</script> & {areas}",
         "area 20,50,90,70 it's \"quoted\" <b>&amp;</b> \\ ');alert('x');//|second line"});
}

}  // namespace
}  // namespace glimmer
