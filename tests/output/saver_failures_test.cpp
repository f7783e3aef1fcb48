#include <gmock/gmock.h>

#include "imaging/clipboard.h"
#include "output/files/open_captures.h"
#include "output/places/output_folders.h"
#include "saver_fixture.h"
#include "support/child_process.h"
#include "support/not_copied.h"
#include "support/windows/dialog_driver.h"
#include "support/windows/kept_clipboard.h"
#include "support/windows/native_tool.h"

// What is left, and what is said, when a file cannot be written or the user stops it.

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using test::DialogDriver;

class SaverFailure : public SaverTest {
protected:
    /// One attempt to save there, which must fail with that text and leave the capture unsaved.
    void expectRefused(const fs::path& path, const std::string& text) {
        messages_.messages.clear();
        dialogs_.path = path;
        EXPECT_FALSE(saver_.savePicture(*document_, SaveMode::Interactive));
        expectMessage(text);
        EXPECT_TRUE(document_->modified());
    }
    void expectMessage(const std::string& text) {
        ASSERT_EQ(messages_.messages.size(), 1U);
        EXPECT_EQ(messages_.messages[0].caption, "Error");
        EXPECT_EQ(messages_.messages[0].text, text);
    }
    static std::string cannotCreate(const fs::path& path) {
        return "Cannot create file: " + utf8FromPath(path) + " for writing";
    }
    [[nodiscard]] std::vector<CaptureDocument*> all() const { return {document_.get()}; }

    std::unique_ptr<CaptureDocument> document_ = capture(test::page(300, 200, PixelFormat::Bgr24, 300), "unsaved");
};

TEST_F(SaverFailure, PlacesThatCannotBeWritten) {
    // Nobody may make a file there.
    const fs::path readOnly = "Z:\\proc\\picture.png";
    expectRefused(readOnly, cannotCreate(readOnly));
    fs::path project = "Z:\\proc\\captures.gmp";
    messages_.messages.clear();
    EXPECT_FALSE(saver_.saveProject(all(), project, false));
    expectMessage(cannotCreate(project) + ".");

    const fs::path removed = scratch_.path() / "removed" / "a.png";  // the folder went while the dialog was up
    expectRefused(removed, cannotCreate(removed));

    fs::path deep = folder();
    while (utf8FromPath(deep).size() < 220) deep /= "a folder of some length";
    std::error_code error;
    fs::create_directories(deep, error);
    const fs::path longName = folder() / (std::string(300, 'x') + ".png");
    expectRefused(longName, cannotCreate(longName));
    EXPECT_EQ(entriesOf(folder()), 1U);

    // A path of 300 characters whose parts are short: some systems take it. Then the file is whole.
    messages_.messages.clear();
    dialogs_.path = deep / (std::string(300 - 4 - utf8FromPath(deep / "").size(), 'x') + ".png");
    if (saver_.savePicture(*document_, SaveMode::Interactive)) {
        EXPECT_TRUE(openCaptures(dialogs_.path).ok());
        EXPECT_EQ(entriesOf(deep), 1U);
    } else {
        expectMessage(cannotCreate(dialogs_.path));
        EXPECT_EQ(entriesOf(deep), 0U);
    }
}

// The other program lets nobody touch the file while it has it open.
TEST_F(SaverFailure, ATargetThatAnotherProgramHasOpen) {
    const fs::path path = folder() / "open.png";
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>{1, 2, 3}).ok());
    test::ChildProcess other(test::testProgram("saver_helper"), {"hold", path, folder() / "held"});
    ASSERT_TRUE(test::pumpUntil([this] { return fs::exists(folder() / "held"); }));
    expectRefused(path, cannotCreate(path));
    EXPECT_EQ(entriesOf(folder()), 2U) << "a temporary file was left";
    other.kill();
    EXPECT_EQ(*readFile(path, 10), (std::vector<uint8_t>{1, 2, 3}));
    dialogs_.path = path;
    EXPECT_TRUE(saver_.savePicture(*document_, SaveMode::Interactive)) << "the way is free now";
}

/// What files are given their names by while the object lives.
struct SystemOf : test::NotCopied {
    explicit SystemOf(const FileOperations& operations) { setFileOperations(&operations); }
    ~SystemOf() { setFileOperations(nullptr); }
};

TEST_F(SaverFailure, TheReasonStandsBelowTheText) {
    FileOperations operations = portableFileOperations();
    operations.explain = [](const fs::path&, FileTrouble trouble) {
        return std::string(trouble == FileTrouble::Protected ? "It is write-protected." : "");
    };
    const SystemOf system(operations);
    const fs::path path = folder() / "a.png";
    ASSERT_TRUE(writeFile(path, std::vector<uint8_t>{1, 2, 3}).ok());
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::remove);
    expectRefused(path, cannotCreate(path) + "\r\nIt is write-protected.");
    messages_.messages.clear();
    fs::path project = path;
    EXPECT_FALSE(saver_.saveProject(all(), project, false));
    expectMessage(cannotCreate(path) + ".\r\nIt is write-protected.");
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
}

// Another program takes the name between the look for a free one and the writing.
TEST_F(SaverFailure, ANameThatIsTakenMeanwhileIsNotOverwritten) {
    settings().writeString(settingsSection(group::general), "LastSaveFolder", utf8FromPath(folder()));
    FileOperations operations = portableFileOperations();
    operations.place = [](const fs::path& file, const fs::path& target) {
        EXPECT_TRUE(target.filename() != "unsaved.png" || writeFile(target, std::vector<uint8_t>(3)).ok());
        return portableFileOperations().place(file, target);
    };
    const SystemOf system(operations);
    EXPECT_EQ(saver_.savePicture(*document_, SaveMode::Automatic), folder() / "unsaved (2).png");
    EXPECT_EQ(readFile(folder() / "unsaved.png", 10)->size(), 3U);
    EXPECT_EQ(entriesOf(folder()), 2U);
}

// Folders of the user's that are not there today, and then none at all.
TEST_F(SaverFailure, WithoutAFolderNothingGoesToTheCurrentOne) {
    OptionsHolder().setText("edtWorkingFolderPath", "");
    const fs::path current = fs::current_path();
    fs::create_directories(folder() / "here");
    fs::current_path(folder() / "here");
    const fs::path user = folder() / "user";
    fs::create_directories(user);
    ASSERT_TRUE(writeFile(user / "Pictures", std::vector<uint8_t>(1)).ok());
    std::wstring before(300, L'\0');
    before.resize(GetEnvironmentVariableW(L"GLIMMERPAD_FOLDERS", before.data(), 300));
    SetEnvironmentVariableW(L"GLIMMERPAD_FOLDERS", user.c_str());
    EXPECT_EQ(picturesFolder(), user / "Documents");
    SetEnvironmentVariableW(L"GLIMMERPAD_FOLDERS", (user / "Pictures").c_str());
    EXPECT_TRUE(picturesFolder().empty());
    EXPECT_FALSE(saver_.savePicture(*document_, SaveMode::Automatic));
    EXPECT_EQ(messages_.messages.size(), 1U);
    for (const auto& given : {mailFolder(), publishFolder(), externalEditorFolder()}) EXPECT_FALSE(given);
    SetEnvironmentVariableW(L"GLIMMERPAD_FOLDERS", before.empty() ? nullptr : before.c_str());
    EXPECT_EQ(entriesOf(fs::current_path()), 0U);
    fs::current_path(current);
}

/// What files are written with while the object lives.
struct WrittenBy : test::NotCopied {
    explicit WrittenBy(FileWriter writer) { setFileWriter(writer); }
    ~WrittenBy() { setFileWriter(nullptr); }
};

/// A disk with room for so many bytes.
size_t roomLeft = 0;
size_t writeUntilFull(const void* data, size_t size, size_t count, std::FILE* file) {
    const size_t fitting = std::min(roomLeft / size, count);
    roomLeft -= fitting * size;
    const size_t written = std::fwrite(data, size, fitting, file);
    if (written < count) errno = ENOSPC;
    return written;
}

// Every kind of file, with room for its beginning: the old file stays as it was, nothing is left beside it.
TEST_F(SaverFailure, AFullDisk) {
    const fs::path path = folder() / "a.png";
    const std::vector<uint8_t> old{4, 5, 6};
    ASSERT_TRUE(writeFile(path, old).ok());
    const std::string full = "\r\nThe disk is full.";
    const WrittenBy fullDisk(writeUntilFull);
    for (const PictureFormat format :
         {PictureFormat::Png, PictureFormat::Gif, PictureFormat::Bmp, PictureFormat::Pdf}) {
        roomLeft = 1000;
        dialogs_.format = format;
        expectRefused(path, cannotCreate(path) + full);
    }
    fs::path project = folder() / "a.gmp";
    roomLeft = 1000;
    messages_.messages.clear();
    EXPECT_FALSE(saver_.saveProject(all(), project, false));
    expectMessage(cannotCreate(project) + "." + full);

    roomLeft = 1000;
    dialogs_.path = folder() / "page.html";
    messages_.messages.clear();
    EXPECT_FALSE(saver_.exportPage(all()));
    expectMessage(cannotCreate(folder() / "page_files" / "page_img1.png") + full);

    roomLeft = 1000;
    messages_.messages.clear();
    EXPECT_FALSE(saver_.publish(all()));
    expectMessage(cannotCreate(work() / "publish" / "unsaved.png") + full);

    EXPECT_EQ(*readFile(path, 10), old);
    EXPECT_EQ(entriesOf(folder()), 1U);
    EXPECT_EQ(entriesOf(work() / "publish"), 0U);
    EXPECT_TRUE(document_->modified());
}

/// A disk with room for pictures and no more.
size_t writeNoText(const void* data, size_t size, size_t count, std::FILE* file) {
    return *static_cast<const char*>(data) == '<' ? 0 : std::fwrite(data, size, count, file);
}

// The pictures of the older page go only when the page that shows the new ones is on the disk.
TEST_F(SaverFailure, APageThatDoesNotFitLeavesTheOlderPictures) {
    dialogs_.path = folder() / "page.html";
    ASSERT_TRUE(saver_.exportPage(all()));
    const auto picture = *readFile(folder() / "page_files" / "page_img1.png", 1U << 20U);
    const auto other = capture(test::page(50, 30, PixelFormat::Bgr24, 4), "other");
    CaptureDocument* const others[] = {other.get()};
    const WrittenBy fullDisk(writeNoText);
    messages_.messages.clear();
    EXPECT_FALSE(saver_.exportPage(others));
    expectMessage(cannotCreate(dialogs_.path));
    EXPECT_EQ(*readFile(folder() / "page_files" / "page_img1.png", 1U << 20U), picture);
    EXPECT_EQ(entriesOf(folder()), 2U);
}

/// A drive letter for a folder, that can be taken away like a drive that is pulled out.
class Drive : test::NotCopied {
public:
    explicit Drive(const fs::path& folder) {
        inserted = this;
        while (((GetLogicalDrives() >> static_cast<unsigned>(letter_ - 'A')) & 1U) != 0) --letter_;
        // Wine's own function makes a drive that has no files.
        if (test::toolsAreHere())
            EXPECT_EQ(test::runTool("ln -s " + test::quotedForTool(folder) + " " + link()).code, 0);
        else
            EXPECT_NE(DefineDosDeviceW(0, name().c_str(), folder.c_str()), FALSE);
    }
    ~Drive() { pull(); }

    [[nodiscard]] fs::path path() const { return std::string(1, letter_) + ":\\"; }
    void pull() const {
        if (test::toolsAreHere())
            EXPECT_EQ(test::runTool("rm -f " + link()).code, 0);
        else
            DefineDosDeviceW(DDD_REMOVE_DEFINITION, name().c_str(), nullptr);
    }
    /// Pulls the drive out under a file that is being written.
    static size_t pullAndWrite(const void* data, size_t size, size_t count, std::FILE* file) {
        setFileWriter(nullptr);
        inserted->pull();
        return std::fwrite(data, size, count, file);
    }

private:
    [[nodiscard]] std::wstring name() const { return {static_cast<wchar_t>(letter_), L':'}; }
    /// Of Wine's prefix, beside that of drive C.
    [[nodiscard]] std::string link() const {
        return "\"$(dirname " + test::quotedForTool("C:\\") + ")/" + static_cast<char>(letter_ - 'A' + 'a') + ":\"";
    }
    static inline const Drive* inserted = nullptr;
    char letter_ = 'Y';
};

TEST_F(SaverFailure, ADriveThatIsPulledOut) {
    const std::vector<uint8_t> old{7, 8, 9};
    const Drive drive(folder());
    const fs::path path = drive.path() / "a.png";
    ASSERT_TRUE(writeFile(path, old).ok());
    EXPECT_TRUE(fs::exists(folder() / "a.png"));
    {
        const WrittenBy pulling(&Drive::pullAndWrite);
        expectRefused(path, cannotCreate(path));
    }
    expectRefused(path, cannotCreate(path));
    EXPECT_EQ(*readFile(folder() / "a.png", 10), old) << "what was there is whole when the drive comes back";
}

TEST_F(SaverFailure, FoldersThatCannotBeMade) {
    ASSERT_TRUE(writeFile(work(), std::vector<uint8_t>(1)).ok());  // a file stands in the way
    const auto refused = [this](char number, const char* name) {
        return std::string("[") + number + "] Failed to get access to folder \"" + utf8FromPath(work() / name) + "\"";
    };
    EXPECT_FALSE(saver_.sendByMail(all()));
    expectMessage(refused('1', "mail"));
    messages_.messages.clear();
    EXPECT_FALSE(saver_.publish(all()));
    expectMessage(refused('2', "publish"));
    messages_.messages.clear();
    const fs::path copies = picturesFolder() / "Vistrane";
    fs::remove_all(copies);
    ASSERT_TRUE(writeFile(copies, std::vector<uint8_t>(1)).ok());
    EXPECT_FALSE(saver_.saveForExternalEditor(all()));
    fs::remove(copies);
    expectMessage("[4] Failed to get access to folder \"" + utf8FromPath(copies) + "\"");
}

TEST_F(SaverFailure, AnExternalEditorThatDoesNotStart) {
    starts_.works = false;
    EXPECT_FALSE(SpokenSaver::startExternalEditor("C:\\none.exe", "\"a.png\""));
    expectMessage("An error occured while starting external editor.\r\nPlease check whether specified path exists.");
}

// --- cancelling ---------------------------------------------------------------------------------------------------

class Cancelling : public SaverTest {
protected:
    /// The user presses Cancel as soon as the window is there, having seen how far it has come.
    [[nodiscard]] DialogDriver::Step cancel(const std::wstring& text) const {
        return {L"Please wait", [text](HWND window) {
                    bool told = false;
                    for (HWND label : test::childrenOf(window, L"Static")) told = told || test::textOf(label) == text;
                    return told && test::clickButton(window, L"Cancel");
                }};
    }
    void SetUp() override {
        SaverTest::SetUp();
        for (const char* name : {"one", "two"}) documents_.push_back(largeCapture(name));
        for (const auto& document : documents_) all_.push_back(document.get());
    }

    std::vector<std::unique_ptr<CaptureDocument>> documents_;
    std::vector<CaptureDocument*> all_;
};

TEST_F(Cancelling, LeavesNoFileAndNothingSaved) {
    const std::wstring creating = L"Please wait: creating pictures...";
    const test::KeptClipboard kept;
    test::emptyClipboard();
    dialogs_.path = folder() / "a.png";
    {
        const DialogDriver driver({cancel(creating)});
        EXPECT_FALSE(saver_.savePicture(*all_[0], SaveMode::Interactive));
    }
    fs::path project = folder() / "a.gmp";
    {
        const DialogDriver driver({cancel(L"Please wait: saving the project...")});
        EXPECT_FALSE(saver_.saveProject(all_, project, false));
    }
    dialogs_.path = folder() / "page.html";
    {
        const DialogDriver driver({cancel(creating)});
        EXPECT_FALSE(saver_.exportPage(all_));
    }
    {
        const DialogDriver driver({cancel(creating)});
        EXPECT_FALSE(saver_.publish(all_));
    }
    {
        const DialogDriver driver({cancel(L"Please wait: copying data to clipboard...")});
        EXPECT_FALSE(saver_.copyToClipboard(std::span(all_).first(1)));
    }
    EXPECT_FALSE(clipboardHasPicture());
    EXPECT_EQ(entriesOf(folder()), 0U);
    EXPECT_EQ(entriesOf(work() / "publish"), 0U);
    EXPECT_TRUE(messages_.messages.empty()) << messages_.messages[0].text;
    for (const CaptureDocument* document : all_) EXPECT_TRUE(document->modified());
}

// Of several files none stays, also not those that were complete when the user stopped.
TEST_F(Cancelling, TakesBackTheFilesThatWereComplete) {
    all_.insert(all_.begin(), nullptr);
    const auto small = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "small");
    all_[0] = small.get();
    const fs::path first = work() / "publish" / "small.png";
    bool wasThere = false;
    {
        const DialogDriver driver({{L"Please wait", [&](HWND window) {
                                        wasThere = fs::exists(first);
                                        return test::clickButton(window, L"Cancel");
                                    }}});
        EXPECT_FALSE(saver_.publish(all_));
    }
    EXPECT_TRUE(wasThere);
    EXPECT_EQ(entriesOf(work() / "publish"), 0U);
}

// The page that was there before stays whole.
TEST_F(Cancelling, AnOlderPageStays) {
    const auto small = capture(test::page(40, 30, PixelFormat::Bgr24, 4), "small");
    CaptureDocument* const first[] = {small.get()};
    dialogs_.path = folder() / "page.html";
    ASSERT_TRUE(saver_.exportPage(first));
    const auto page = *readFile(dialogs_.path, 1U << 20U);
    const auto picture = *readFile(folder() / "page_files" / "page_img1.png", 1U << 20U);
    {
        const DialogDriver driver({cancel(L"Please wait: creating pictures...")});
        EXPECT_FALSE(saver_.exportPage(all_));
    }
    EXPECT_EQ(*readFile(dialogs_.path, 1U << 20U), page);
    EXPECT_EQ(*readFile(folder() / "page_files" / "page_img1.png", 1U << 20U), picture);
    EXPECT_EQ(entriesOf(folder()), 2U);
    // Written again it shows the new captures and leaves nothing beside it.
    const auto other = capture(test::page(50, 30, PixelFormat::Bgr24, 4), "other");
    CaptureDocument* const second[] = {other.get(), small.get()};
    ASSERT_TRUE(saver_.exportPage(second));
    EXPECT_NE(*readFile(dialogs_.path, 1U << 20U), page);
    EXPECT_EQ(entriesOf(folder() / "page_files"), 2U);
    EXPECT_EQ(entriesOf(folder()), 2U);
}

}  // namespace
}  // namespace glimmer
