// What becomes of a capture, action by action, as somebody else reads it: libpng, the clipboard, a mail program, the
// program that is started.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/scratch_folder.h"
#include "support/windows/host_fixture.h"
#include "support/windows/kept_clipboard.h"
#include "support/windows/mail_program.h"

namespace glimmer::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

Bytes contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class Actions : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        // The user saved there last.
        const std::string folder = folder_.path().string();
        host_.writeSettings(knownUser + "LastSaveFolder=" + folder + "\nedtWorkingFolderPath=" + work_.path().string() +
                            "\n");
        host_.hostShutdown();
    }
    void take(int32_t action) const {
        host_.hostCapture(L"http://example.com/a/b?c", L"Title: \x20AC / 1", L"", pngOf(picture_).data(), action, 0, 0);
    }
    [[nodiscard]] std::vector<fs::path> files() const {
        std::vector<fs::path> all;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) all.push_back(entry.path());
        return all;
    }
    void expectPicture(const fs::path& path) const {
        EXPECT_EQ(path.extension(), ".png");
        EXPECT_EQ(pictureOf(contentOf(path)), picture_) << path;
    }

    ScratchFolder folder_{"actions"};
    ScratchFolder work_{"work"};
    const RgbPicture picture_ = patternPicture(123, 77, 3);
};

TEST_F(Actions, TenSavesWithoutAQuestion) {
    take(GLIMMERPAD_SAVE_QUIETLY);
    ASSERT_THAT(files(), SizeIs(1));
    expectPicture(files()[0]);
    take(GLIMMERPAD_SAVE_QUIETLY);
    ASSERT_THAT(files(), SizeIs(2)) << "nothing is overwritten";
    for (const fs::path& file : files()) expectPicture(file);
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(Actions, OneSavesWithTheDialog) {
    {
        const DialogRobot robot([](HWND box) {
            // The dialog with the name that is proposed, then the question about the folder.
            if (!pressButton(box, L"Save")) refuse(box);
        });
        take(GLIMMERPAD_SAVE);
        EXPECT_THAT(robot.seen(), SizeIs(2));
    }
    ASSERT_THAT(files(), SizeIs(1));
    expectPicture(files()[0]);
    take(GLIMMERPAD_SAVE);
    EXPECT_THAT(files(), SizeIs(1)) << "the user wanted none of it";
    EXPECT_THAT(takeDialogs(), SizeIs(1));
}

TEST_F(Actions, TwoCopies) {
    take(GLIMMERPAD_COPY);
    ASSERT_NE(OpenClipboard(nullptr), FALSE);
    const Bytes png = bytesOfClipboard(RegisterClipboardFormatW(L"PNG"));
    const Bytes dib = bytesOfClipboard(CF_DIB);
    EmptyClipboard();
    CloseClipboard();
    EXPECT_EQ(pictureOf(png), picture_);
    // The other form by its own rules: rows of whole words, from the bottom.
    ASSERT_GT(dib.size(), sizeof(BITMAPINFOHEADER));
    BITMAPINFOHEADER header{};
    std::memcpy(&header, dib.data(), sizeof header);
    ASSERT_EQ(header.biWidth, static_cast<LONG>(picture_.width));
    ASSERT_EQ(header.biHeight, static_cast<LONG>(picture_.height));
    ASSERT_TRUE(header.biBitCount == 24 || header.biBitCount == 32);
    const size_t pixel = header.biBitCount / 8U;
    const size_t row = (picture_.width * pixel + 3) / 4 * 4;
    const size_t first = header.biSize + (header.biCompression == BI_BITFIELDS ? 12U : 0U);
    ASSERT_GE(dib.size(), first + row * picture_.height);
    const RgbPicture shown = makePicture(picture_.width, picture_.height, [&](uint32_t x, uint32_t y) {
        const uint8_t* at = dib.data() + first + row * (picture_.height - 1 - y) + x * pixel;
        return static_cast<uint32_t>(at[2]) << 16U | static_cast<uint32_t>(at[1]) << 8U | at[0];
    });
    EXPECT_EQ(shown, picture_);
}

TEST_F(Actions, ThreeMails) {
    NEEDS_MAIL_PROGRAM();
    const ScratchFolder sent("sent");
    const MailProgram program(L"mail_recorder", sent.path());
    take(GLIMMERPAD_MAIL);
    const Bytes record = contentOf(sent.path() / "record");
    EXPECT_THAT(std::string(record.begin(), record.end()), HasSubstr("subject Screenshots\n"));
    EXPECT_EQ(pictureOf(contentOf(sent.path() / "1.attachment")), picture_);
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

struct Started {
    static inline std::vector<std::pair<std::wstring, std::wstring>> programs;
    static BOOL WINAPI start(SHELLEXECUTEINFOW* info) {
        programs.emplace_back(info->lpFile, info->lpParameters != nullptr ? info->lpParameters : L"");
        return TRUE;
    }
};

TEST_F(Actions, FourStartsAnotherProgramWithTheFile) {
    const ImportPatch patch(host_.module, "shell32.dll", "ShellExecuteExW", &Started::start);
    take(GLIMMERPAD_EXTERNAL_VIEWER);
    ASSERT_THAT(Started::programs, SizeIs(1));
    // A program with the file, quoted; or, where the program is not there, the file itself to whatever changes its
    // kind.
    auto [program, file] = Started::programs[0];
    if (file.empty()) {
        file = program;
    } else {
        ASSERT_TRUE(file.starts_with(L'"') && file.ends_with(L'"'));
        file = file.substr(1, file.size() - 2);
    }
    expectPicture(file);
    std::error_code ignored;
    fs::remove(file, ignored);
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

}  // namespace
}  // namespace glimmer::test
