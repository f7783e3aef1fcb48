#include <gmock/gmock.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/slider.h>
#include <wx/textctrl.h>

#include "common/wide_text.h"
#include "imaging/picture_file.h"
#include "output/files/editable_png.h"
#include "output/files/open_captures.h"
#include "output/files/project_file.h"
#include "output/files/project_lists.h"
#include "output/picture/output_picture.h"
#include "output/places/working_folder.h"
#include "output/ways/uJPEGSettings.h"
#include "saver_fixture.h"
#include "support/windows/dialog_driver.h"
#include "support/windows/native_tool.h"

// Saving pictures and projects: what is written, what the dialogs do, what is remembered.

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using test::DialogDriver;
using test::NextModal;
using testing::HasSubstr;

// --- pictures -----------------------------------------------------------------------------------------------------

using SavedPicture = SaverTest;

// Other programs than ours say that each file is whole, and how large the picture is.
TEST_F(SavedPicture, EveryFormatIsReadByAnotherProgram) {
    TBitmap picture = test::page(220, 130, PixelFormat::Bgra32, 12);
    picture.row(100)[83] = 0;  // a transparent pixel, to be laid on white
    const auto document = capture(std::move(picture), "formats");
    annotate(*document, "see here");
    const TBitmap expected = flattenedOnWhite(*outputPicture(*document, silent_.textPainter())).take();
    const struct {
        PictureFormat format;
        const char* file;
        const char* check;
        const char* says;
    } cases[] = {
        {PictureFormat::Png, "a.png", "identify -regard-warnings", "PNG 220x130"},
        {PictureFormat::Jpeg, "a.jpg", "djpeg -strict -pnm -outfile /dev/null -verbose", "width=220, height=130"},
        {PictureFormat::Gif, "a.gif", "giftext", "Width = 220, Height = 130"},
        {PictureFormat::Bmp, "a.bmp", "identify -regard-warnings", "220x130"},
        {PictureFormat::Pdf, "a.pdf", "qpdf --check", "No syntax or stream encoding errors"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.file);
        dialogs_.path = folder() / one.file;
        dialogs_.format = one.format;
        std::unique_ptr<NextModal> quality;
        if (one.format == PictureFormat::Jpeg)
            quality = std::make_unique<NextModal>([](wxDialog& dialog) { dialog.EndModal(wxID_OK); });
        const auto saved = saver_.savePicture(*document, SaveMode::Interactive);
        ASSERT_EQ(saved, dialogs_.path);
        test::expectTool(std::string(one.check) + " " + test::quotedForTool(*saved), {one.says});
        const auto file = readFile(*saved, 1U << 24U);
        ASSERT_TRUE(file.ok());
        if (one.format == PictureFormat::Pdf) continue;
        const Result<TBitmap> read = readPicture(*file);
        ASSERT_TRUE(read.ok()) << read.message();
        const bool exact = one.format == PictureFormat::Png || one.format == PictureFormat::Bmp;
        if (!exact) continue;
        EXPECT_TRUE(samePixels(flattenedOnWhite(*read).take(), expected));
    }
    EXPECT_FALSE(document->modified());
    EXPECT_EQ(entriesOf(folder()), 5U) << "a temporary file was left";
    // The PNG file opens with what was drawn.
    const auto opened = openCaptures(folder() / "a.png");
    ASSERT_TRUE(opened.ok()) << opened.message();
    EXPECT_EQ((*opened)[0]->annotations().size(), 2U);
    EXPECT_EQ((*opened)[0]->info().notes, "notes on see here");
    // Without them, if the option says so: then the picture is all there is.
    OptionsHolder().setOn("chkEmbedNativeInfo", false);
    dialogs_.path = folder() / "plain.png";
    dialogs_.format = PictureFormat::Png;
    ASSERT_TRUE(saver_.savePicture(*document, SaveMode::Interactive));
    const auto plain = openCaptures(dialogs_.path);
    ASSERT_TRUE(plain.ok()) << plain.message();
    EXPECT_EQ((*plain)[0]->annotations().size(), 0U);
    EXPECT_EQ((*plain)[0]->info().notes, "");
    EXPECT_TRUE(samePixels(flattenedOnWhite((*plain)[0]->background()).take(), expected));
}

TEST_F(SavedPicture, AfterwardsTheFolderIsOfferedAndTheAnswerKept) {
    const auto document = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "asked");
    dialogs_.path = folder() / "asked.png";
    messages_.answers = {{MessageAnswer::Yes, true}};
    ASSERT_TRUE(saver_.savePicture(*document, SaveMode::Interactive));
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(messages_.messages[0].caption, "Saved successfully");
    EXPECT_EQ(messages_.messages[0].text, "Would you like to open the target folder?\r\n");
    ASSERT_EQ(starts_.started.size(), 1U);
    EXPECT_EQ(starts_.started[0].first, "explorer");
    EXPECT_EQ(starts_.started[0].second, "/select,\"" + utf8FromPath(dialogs_.path) + "\"");
    ASSERT_TRUE(saver_.savePicture(*document, SaveMode::Interactive));
    EXPECT_EQ(messages_.messages.size(), 1U) << "asked again";
    EXPECT_EQ(starts_.started.size(), 2U);
}

TEST_F(SavedPicture, AutomaticSavesAskNothingAndReplaceNothing) {
    const auto document = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "a/b:c");
    settings().writeString(settingsSection(group::general), "LastSaveFolder", utf8FromPath(folder()));
    EXPECT_EQ(saver_.savePicture(*document, SaveMode::Automatic), folder() / "a_b_c.png");
    EXPECT_EQ(saver_.savePicture(*document, SaveMode::Automatic), folder() / "a_b_c (2).png");
    const auto device = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "..\\..\\con");
    device->run(std::make_unique<SetInfo>(SetInfo::Field::Name, "con"));
    const auto saved = saver_.savePicture(*device, SaveMode::Automatic);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->parent_path(), folder());
    EXPECT_TRUE(messages_.messages.empty());
    EXPECT_TRUE(dialogs_.proposed.empty());
    EXPECT_EQ(entriesOf(folder()), 3U);
}

TEST_F(SavedPicture, GivingUpLeavesNothing) {
    const auto document = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "given up");
    EXPECT_FALSE(saver_.savePicture(*document, SaveMode::Interactive));
    dialogs_.path = folder() / "a.jpg";
    dialogs_.format = PictureFormat::Jpeg;
    {
        const NextModal quality([](wxDialog& dialog) { dialog.EndModal(wxID_CANCEL); });
        EXPECT_FALSE(saver_.savePicture(*document, SaveMode::Interactive));
    }
    EXPECT_EQ(entriesOf(folder()), 0U);
    EXPECT_TRUE(document->modified());
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(SavedPicture, TheJpegDialogKeepsSliderAndNumberTogether) {
    EXPECT_EQ(jpegQuality(), 80);
    const auto show = [](const std::function<void(wxDialog&, wxSlider&, wxTextCtrl&)>& use) {
        TJPEGSettings dialog(nullptr);
        const NextModal modal([&use](wxDialog& shown) {
            use(shown, *test::find<wxSlider>(shown, "tbCompressionQ"),
                *test::find<wxTextCtrl>(shown, "edtCompressionQ"));
        });
        return dialog.ShowModal();
    };
    show([](wxDialog& dialog, wxSlider& slider, wxTextCtrl& edit) {
        EXPECT_EQ(dialog.GetTitle(), "JPEG Settings");
        EXPECT_EQ(slider.GetTickFreq(), 10);
        edit.SetFocus();
        edit.SelectAll();
        test::typeText("35");
        EXPECT_EQ(slider.GetValue(), 35);
        edit.SelectAll();
        test::typeText("500");
        EXPECT_EQ(slider.GetValue(), 100);
        slider.SetFocus();
        test::pressKey(VK_PRIOR);  // ten towards the left end
        EXPECT_EQ(edit.GetValue(), "90");
        test::click(*dialog.FindWindow(wxID_CANCEL));
    });
    EXPECT_EQ(jpegQuality(), 80);
    show([](wxDialog& dialog, wxSlider&, wxTextCtrl& edit) {
        edit.SetFocus();
        edit.SelectAll();
        test::typeText("7");
        test::click(*dialog.FindWindow(wxID_OK));
    });
    EXPECT_EQ(jpegQuality(), 7);
}

// --- the system's dialogs -----------------------------------------------------------------------------------------

constexpr const wchar_t* picturesTitle = L"Save Screenshot...";

class SaveDialogsTest : public SaverTest {
protected:
    void SetUp() override {
        SaverTest::SetUp();
        setSaveDialogs(nullptr);
    }
    static HWND nameField(HWND dialog) {
        const auto fields = test::childrenOf(dialog, L"Edit");
        if (fields.empty()) ADD_FAILURE() << "no field for the name";
        return fields.empty() ? nullptr : fields.back();
    }
    /// None in a window that is not the picture dialog.
    static HWND filterBox(HWND dialog) {
        for (HWND box : test::childrenOf(dialog, L"ComboBox"))
            if (SendMessageW(box, CB_GETCOUNT, 0, 0) == 5) return box;
        return nullptr;
    }
    static std::wstring filterText(HWND dialog, WPARAM index) {
        wchar_t text[100] = {};
        SendMessageW(filterBox(dialog), CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text));
        return text;
    }
    static void chooseFilter(HWND dialog, int index) {
        HWND box = filterBox(dialog);
        SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        SendMessageW(GetParent(box), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(box), CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(box));
    }
};

TEST_F(SaveDialogsTest, TheFilterChangesTheExtensionAndTheAnswerIsRemembered) {
    const auto document = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "page");
    settings().writeString(settingsSection(group::general), "LastSaveFolder", utf8FromPath(folder()));
    std::vector<std::wstring> names;
    std::wstring filter;
    {
        const DialogDriver driver({{picturesTitle, [&](HWND dialog) {
                                        if (filterBox(dialog) == nullptr) return false;
                                        filter = filterText(dialog, 2);
                                        names.push_back(test::textOf(nameField(dialog)));
                                        for (const int index : {1, 4, 3}) {
                                            chooseFilter(dialog, index);
                                            names.push_back(test::textOf(nameField(dialog)));
                                        }
                                        return test::clickButton(dialog, L"Save");
                                    }}});
        EXPECT_EQ(saver_.savePicture(*document, SaveMode::Interactive), folder() / "page.bmp");
    }
    EXPECT_EQ(filter, L"CompuServe GIF Image (*.gif)");
    EXPECT_EQ(names, (std::vector<std::wstring>{L"page.png", L"page.jpg", L"page.pdf", L"page.bmp"}));
    EXPECT_TRUE(fs::exists(folder() / "page.bmp"));

    // The next one begins with the same format in the same folder.
    std::wstring proposed;
    const DialogDriver driver({{picturesTitle, [&](HWND dialog) {
                                    if (filterBox(dialog) == nullptr) return false;
                                    proposed = test::textOf(nameField(dialog));
                                    return test::clickButton(dialog, L"Cancel");
                                }}});
    EXPECT_FALSE(saver_.savePicture(*document, SaveMode::Interactive));
    EXPECT_EQ(proposed, L"page.bmp");
    EXPECT_EQ(entriesOf(folder()), 1U);
}

// Several captures: one folder and format for all, names as in automatic saves, one question at the end.
TEST_F(SaveDialogsTest, SeveralCapturesGoIntoOneFolder) {
    std::vector<std::unique_ptr<CaptureDocument>> captures;
    std::vector<CaptureDocument*> all;
    for (const char* name : {"page", "page", "other"}) {
        captures.push_back(capture(test::page(40, 30, PixelFormat::Bgr24, 4), name));
        all.push_back(captures.back().get());
    }
    const fs::path start = folder() / "start";
    fs::create_directories(start / "here");
    settings().writeString(settingsSection(group::general), "LastSaveFolder", utf8FromPath(start));
    const auto choose = [](const wchar_t* button) {
        return DialogDriver::Step{L"Save Screenshots to Disk", [button](HWND dialog) {
                                      if (filterBox(dialog) == nullptr) return false;
                                      EXPECT_EQ(filterText(dialog, 0), L"Portable Network Graphics (*.png)");
                                      chooseFilter(dialog, 3);
                                      SendMessageW(nameField(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"here"));
                                      return test::clickButton(dialog, button);
                                  }};
    };
    {
        const DialogDriver driver({choose(L"Cancel")});
        EXPECT_FALSE(saver_.savePictures(all));
    }
    EXPECT_EQ(entriesOf(start / "here"), 0U);
    EXPECT_TRUE(all[0]->modified());
    messages_.answers = {{MessageAnswer::Yes}};
    const DialogDriver driver({choose(L"Save")});
    EXPECT_TRUE(saver_.savePictures(all));
    for (const char* name : {"page.bmp", "page (2).bmp", "other.bmp"}) EXPECT_TRUE(fs::exists(start / "here" / name));
    EXPECT_EQ(entriesOf(start / "here"), 3U);
    for (const CaptureDocument* document : all) EXPECT_FALSE(document->modified());
    ASSERT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(messages_.messages[0].caption, "Saved successfully");
    ASSERT_EQ(starts_.started.size(), 1U);
    EXPECT_EQ(starts_.started[0].second, "/select,\"" + utf8FromPath(start / "here" / "page.bmp") + "\"");
    // What the user saved is the user's, wherever it lies: nothing of it is cleaned up.
    dialogs_.path = work() / "own" / "any";
    fs::create_directories(work() / "own");
    setSaveDialogs(&dialogs_);
    EXPECT_TRUE(saver_.savePictures(all));
    EXPECT_EQ(entriesOf(work() / "own"), 3U);
    EXPECT_EQ(WorkingFolder(work()).cleanUp(std::chrono::hours(1), fs::file_time_type::max()), 0U);
}

TEST_F(SaveDialogsTest, AsksBeforeItOverwrites) {
    const auto document = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "page");
    settings().writeString(settingsSection(group::general), "LastSaveFolder", utf8FromPath(folder()));
    const std::vector<uint8_t> old{1, 2, 3};
    ASSERT_TRUE(writeFile(folder() / "page.png", old).ok());
    const auto save = [](HWND dialog) { return filterBox(dialog) != nullptr && test::clickButton(dialog, L"Save"); };
    const auto answer = [](const wchar_t* caption) {
        return [caption](HWND box) { return test::clickButton(box, caption); };
    };
    {
        const DialogDriver driver(
            {{picturesTitle, save}, {picturesTitle, answer(L"No")}, {picturesTitle, answer(L"Cancel")}});
        EXPECT_FALSE(saver_.savePicture(*document, SaveMode::Interactive));
    }
    EXPECT_EQ(*readFile(folder() / "page.png", 10), old);
    const DialogDriver driver({{picturesTitle, save}, {picturesTitle, answer(L"Yes")}});
    EXPECT_TRUE(saver_.savePicture(*document, SaveMode::Interactive));
    EXPECT_TRUE(readPicture(*readFile(folder() / "page.png", 1U << 20U)).ok());
    EXPECT_EQ(entriesOf(folder()), 1U);
}

TEST_F(SaveDialogsTest, TheProjectDialogAddsTheExtension) {
    const auto document = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "page");
    settings().writeString(settingsSection(group::general), "LastSaveFolder", utf8FromPath(folder()));
    std::wstring proposed;
    const DialogDriver driver({{L"Save Project as", [&](HWND dialog) {
                                    proposed = test::textOf(nameField(dialog));
                                    SendMessageW(nameField(dialog), WM_SETTEXT, 0,
                                                 reinterpret_cast<LPARAM>(L"my project"));
                                    return test::clickButton(dialog, L"Save");
                                }}});
    CaptureDocument* const all[] = {document.get()};
    fs::path path;
    EXPECT_TRUE(saver_.saveProject(all, path, true));
    EXPECT_EQ(proposed, L"page.gmp");
    EXPECT_EQ(path, folder() / "my project.gmp");
    EXPECT_TRUE(fs::exists(path));
}

// --- projects -----------------------------------------------------------------------------------------------------

class Project : public SaverTest {
protected:
    void make(int count) {
        for (int i = 0; i < count; ++i) {
            const std::string name = "capture " + std::to_string(i) + " \n \xC3\xA9\xF0\x9F\x98\x80 \\";
            captures_.push_back(
                capture(test::page(100 + i, 80 + i, PixelFormat::Bgra32, 9, static_cast<unsigned>(i)), name));
            annotate(*captures_.back(), "label " + std::to_string(i));
        }
    }
    [[nodiscard]] std::vector<CaptureDocument*> all() const {
        std::vector<CaptureDocument*> pointers;
        for (const auto& one : captures_) pointers.push_back(one.get());
        return pointers;
    }
    /// The message of a project that is refused.
    static std::string refusal(const fs::path& path) {
        const auto opened = openCaptures(path);
        return opened ? "opened" : opened.message();
    }

    std::vector<std::unique_ptr<CaptureDocument>> captures_;
};

TEST_F(Project, WhatWasReadAheadIsWhatIsOpened) {
    make(3);
    fs::path path = folder() / "ahead.gmp";
    ASSERT_TRUE(saver_.saveProject(all(), path, false));
    const fs::path plain = folder() / "plain.png";
    ASSERT_TRUE(writeFile(plain, *encodePng(test::page(30, 20, PixelFormat::Bgr24, 4))));
    {
        const OpeningAhead ahead(path);
        EXPECT_TRUE(openCaptures(plain).ok()) << "another file is read as ever";
        const auto opened = openCaptures(path);
        ASSERT_TRUE(opened.ok()) << opened.message();
        EXPECT_EQ(opened->size(), 3U);
        fs::remove(path);
        EXPECT_FALSE(openCaptures(path).ok()) << "a file is read ahead once";
    }
    { const OpeningAhead unused(plain); }
    fs::remove(plain);
    const OpeningAhead missing(plain);
    EXPECT_EQ(refusal(plain), refusal(plain)) << "the same sentence from the thread and from here";
    EXPECT_NE(refusal(plain), "opened");
}

TEST_F(Project, TwentyCapturesComeBackAsTheyWere) {
    make(20);
    OptionsHolder().setOn("chkEmbedNativeInfo", false);  // that is for pictures
    fs::path path = folder() / pathFromUtf8("project \xC3\xA9.gmp");
    ASSERT_TRUE(saver_.saveProject(all(), path, false));
    test::expectTool("unzip -t " + test::quotedForTool(path));
    const auto opened = openCaptures(path);
    ASSERT_TRUE(opened.ok()) << opened.message();
    ASSERT_EQ(opened->size(), captures_.size());
    for (size_t i = 0; i < captures_.size(); ++i) {
        SCOPED_TRACE(i);
        CaptureDocument& before = *captures_[i];
        CaptureDocument& after = *(*opened)[i];
        EXPECT_EQ(after.info(), before.info());
        EXPECT_EQ(after.annotations().size(), 2U);
        EXPECT_TRUE(std::equal(after.annotations().begin(), after.annotations().end(), before.annotations().begin()));
        EXPECT_TRUE(samePixels(after.background(), before.background()));
        EXPECT_FALSE(after.modified());
        EXPECT_FALSE(before.modified());
    }
    EXPECT_EQ(entriesOf(folder()), 1U);
}

TEST_F(Project, DamagedForeignAndNewerArchivesAreRefusedWhole) {
    make(3);
    fs::path path = folder() / "good.gmp";
    ASSERT_TRUE(saver_.saveProject(all(), path, false));
    const std::vector<uint8_t> good = *readFile(path, 1U << 24U);
    const auto write = [this](const std::string& name, const std::vector<uint8_t>& bytes) {
        EXPECT_TRUE(writeFile(folder() / name, bytes).ok());
        return folder() / name;
    };
    std::vector<uint8_t> flipped = good;
    flipped[good.size() / 2] ^= 0x10U;  // inside a picture: its checksum is wrong
    EXPECT_THAT(refusal(write("flipped.gmp", flipped)), HasSubstr("is damaged or is not a Glimmerpad project."));
    EXPECT_THAT(refusal(write("short.gmp", {good.begin(), good.begin() + static_cast<ptrdiff_t>(good.size() / 2)})),
                HasSubstr("damaged"));
    EXPECT_THAT(refusal(write("empty.gmp", {})), HasSubstr("damaged"));
    EXPECT_THAT(refusal(folder() / "none.gmp"), HasSubstr("cannot be read"));
    if (!test::toolsAreHere()) GTEST_SKIP() << "the other archives are made by a tool";
    // An archive of somebody else's, one of a later version, and one that lacks a picture.
    const std::string here = "cd " + test::quotedForTool(folder());
    const auto archive = [&here](const std::string& name, const std::string& script) {
        const test::ToolResult made =
            test::runTool(here + " && python3 -c \"import zipfile as z\ng=z.ZipFile('good.gmp')\no=z.ZipFile('" + name +
                          "','w')\n" + script + "\no.close()\"");
        EXPECT_EQ(made.code, 0) << made.output;
    };
    archive("foreign.gmp", "o.writestr('readme.txt','hello')");
    EXPECT_THAT(refusal(folder() / "foreign.gmp"), HasSubstr("damaged or is not"));
    archive("newer.gmp", "[o.writestr(n, b'2' if n=='Version' else g.read(n)) for n in g.namelist()]");
    EXPECT_THAT(refusal(folder() / "newer.gmp"), HasSubstr("newer version"));
    archive("lacking.gmp", "[o.writestr(n, g.read(n)) for n in g.namelist() if n!='0002.png']");
    EXPECT_THAT(refusal(folder() / "lacking.gmp"), HasSubstr("damaged"));
    // Repacked by another program it is still one.
    archive("repacked.gmp", "[o.writestr(n, g.read(n), z.ZIP_DEFLATED) for n in reversed(g.namelist())]");
    EXPECT_EQ(refusal(folder() / "repacked.gmp"), "opened");
    // A small file whose second picture is 700 MB of zeros once it is unpacked.
    archive("zeros.gmp",
            "[o.writestr(n, g.read(n)) for n in g.namelist() if n!='0002.png']\ni=z.ZipInfo('0002.png')\n"
            "i.compress_type=z.ZIP_DEFLATED\nw=o.open(i,'w')\n[w.write(bytes(1<<20)) for k in range(700)]\nw.close()");
    EXPECT_THAT(refusal(folder() / "zeros.gmp"), HasSubstr("holds a picture that is too large"));
}

TEST_F(Project, KeepsItsLimits) {
    make(3);
    const std::vector<CaptureDocument*> documents = all();
    const std::vector<const CaptureDocument*> captures(documents.begin(), documents.end());
    const CaptureEncoder encode = [this](const CaptureDocument& capture, size_t /*index*/) {
        return silent_.encode(capture, PictureFormat::Png);
    };
    const CaptureDecoder decode = [](std::span<const uint8_t> png, CaptureInfo info) {
        return CaptureDocument::create(readPicture(png).take(), std::move(info));
    };
    std::vector<CaptureInfo> infos;
    ProjectLimits exact{0, 0, captures.size(), 0};
    for (const CaptureDocument* capture : captures) {
        infos.push_back(capture->info());
        exact.pictureBytes = std::max<uint64_t>(exact.pictureBytes, encode(*capture, 0)->size());
    }
    exact.listBytes = std::max(projectNames(infos).size(), projectPages(infos).size());
    const fs::path path = folder() / "limits.gmp";
    ASSERT_TRUE(writeProject(path, captures, encode));
    exact.fileBytes = fs::file_size(path);
    EXPECT_TRUE(writeProject(path, captures, encode, exact));
    EXPECT_TRUE(readProject(path, decode, exact).ok());
    const std::vector<uint8_t> good = *readFile(path, exact.fileBytes);

    std::vector<ProjectLimits> less(4, exact);
    --less[0].fileBytes;
    --less[1].pictureBytes;
    --less[2].captures;
    --less[3].listBytes;
    const char* sentences[] = {"would be larger than", "is too large for a project", "holds at most 2 captures",
                               "too long for one project"};
    for (size_t i = 0; i < less.size(); ++i) {
        EXPECT_THAT(writeProject(path, captures, encode, less[i]).message(), HasSubstr(sentences[i]));
        EXPECT_FALSE(readProject(path, decode, less[i]).ok()) << sentences[i];
        EXPECT_EQ(*readFile(path, exact.fileBytes), good) << "the older file stays";
    }
    EXPECT_EQ(entriesOf(folder()), 1U);

    // A capture that comes without what makes it editable is told of, and only such a one.
    bool lacksData = true;
    EXPECT_TRUE(openCaptures(path, &lacksData).ok());
    EXPECT_FALSE(lacksData);
    OptionsHolder().setOn("chkEmbedNativeInfo", false);
    ASSERT_TRUE(writeProject(path, captures, encode));
    EXPECT_TRUE(openCaptures(path, &lacksData).ok());
    EXPECT_TRUE(lacksData);
}

TEST_F(Project, SixLongPagesOnASeventhStayAnnotations) {
    captures_.push_back(capture(test::page(1280, 10000, PixelFormat::Bgra32, 9, 1), "long"));
    for (int32_t i = 0; i < 6; ++i) {
        TBitmap page = TBitmap::create(1280, 10000, PixelFormat::Bgra32).take();
        page.fill(page.bounds(), rgb(static_cast<uint8_t>(i), 90, 200));
        ASSERT_TRUE(captures_[0]->run(std::make_unique<AddAnnotation>(pictureAnnotation({}, std::move(page), {i, i}))));
    }
    fs::path path = folder() / "long.gmp";
    ASSERT_TRUE(saver_.saveProject(all(), path, false));
    const auto opened = openCaptures(path);
    ASSERT_TRUE(opened.ok()) << opened.message();
    EXPECT_EQ((*opened)[0]->annotations().size(), 6U);
}

}  // namespace
}  // namespace glimmer
