// Pictures that are damaged on purpose, in memory that ends where they end.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "support/not_copied.h"
#include "support/windows/host_fixture.h"

namespace glimmer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Bytes that end exactly where memory ends that may be read.
class AtTheEndOfMemory : NotCopied {
public:
    explicit AtTheEndOfMemory(size_t room) {
        SYSTEM_INFO system{};
        GetSystemInfo(&system);
        const size_t page = system.dwPageSize;
        room_ = (room + page - 1) / page * page;
        memory_ = static_cast<uint8_t*>(VirtualAlloc(nullptr, room_ + page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        DWORD before = 0;
        VirtualProtect(memory_ + room_, page, PAGE_NOACCESS, &before);
    }
    ~AtTheEndOfMemory() { VirtualFree(memory_, 0, MEM_RELEASE); }

    const void* put(const Bytes& bytes) {
        uint8_t* const at = memory_ + room_ - bytes.size();
        std::memcpy(at, bytes.data(), bytes.size());
        return at;
    }

private:
    uint8_t* memory_ = nullptr;
    size_t room_ = 0;
};

class HostilePictures : public HostTest {
protected:
    /// What became of a capture: a picture came out, or the user was told something; never both, never neither.
    enum class Fate : uint8_t { Picture, Message, Both, Neither };

    Fate capture(const void* data) {
        boxes_ = 0;
        host_.hostCapture(L"http://example.com/", L"Damaged", L"", data, GLIMMERPAD_ENCODE_IMAGE, 0, 0);
        const bool picture = !host_.encodedContent().empty();
        if (boxes_ > 1) ADD_FAILURE() << boxes_ << " messages for one picture";
        return picture ? (boxes_ > 0 ? Fate::Both : Fate::Picture) : (boxes_ > 0 ? Fate::Message : Fate::Neither);
    }
    /// A session now and then, so that the editor does not fill with what was accepted.
    void endSession(int round) const {
        if (round % 50 == 49) host_.hostShutdown();
    }

    /// Message boxes are counted instead of shown: hundreds would take minutes.
    static int WINAPI countBox(HWND, LPCWSTR, LPCWSTR caption, UINT) {
        EXPECT_STREQ(caption, L"Error");
        ++boxes_;
        return IDOK;
    }
    static inline int boxes_ = 0;
};

/// A small picture with everything that is read: a palette, a transparent colour, texts, the program's own chunks.
Bytes richPng() {
    PngKind kind;
    kind.colourType = 3;
    kind.depth = 4;
    kind.palette = {0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255};
    kind.transparency = {128, 255};
    Bytes file =
        makePng(60, 50, kind, [](uint32_t x, uint32_t y, int) { return (x * x * 7 + y * y * 5 + x * y) / 3 % 4; });
    file.resize(file.size() - 12);  // the end chunk
    const std::string text = std::string("Title") + '\0' + "A page";
    putChunk(file, "tEXt", Bytes(text.begin(), text.end()));
    putChunk(file, "bBIn", Bytes(40, 1));
    putChunk(file, "bBPn", deflated(Bytes(100, 7)));
    putChunk(file, "IEND", {});
    return file;
}

TEST_F(HostilePictures, ADamagedOneIsNoneAndTheUserIsTold) {
    const Bytes good = pngOf(patternPicture(30, 20));
    Bytes wrongSum = good;
    wrongSum[wrongSum.size() - 20] ^= 1;
    const struct {
        const char* what;
        Bytes data;
    } cases[] = {
        {"no PNG", Bytes(1000, 'x')},
        {"damaged pixels", wrongSum},
        {"cut short", Bytes(good.begin(), good.begin() + 60)},
        {"too wide", makePng(200001, 1, {}, [](uint32_t, uint32_t, int) { return 0U; })},
    };
    for (const auto& c : cases) {
        AtTheEndOfMemory memory(c.data.size());
        takeDialogs();
        host_.hostCapture(L"http://a/", L"T", L"", memory.put(c.data), GLIMMERPAD_EDIT, 0, 0);
        EXPECT_EQ(takeDialogs().size(), 1U) << c.what;
        EXPECT_FALSE(host_.resumeAvailable()) << c.what << ": something else was captured instead";
        EXPECT_THAT(HostedLibrary::takeNotices(), ElementsAre(L"enableResumeMenu disable")) << c.what;
    }
    // A good one goes through afterwards, from the end of readable memory too.
    AtTheEndOfMemory memory(good.size());
    host_.hostCapture(L"http://a/", L"T", L"", memory.put(good), GLIMMERPAD_ENCODE_IMAGE, 0, 0);
    EXPECT_EQ(encodedPicture(), patternPicture(30, 20));
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(HostilePictures, AddressesThatAreNoneAreRefused) {
    const ImportPatch boxes(host_.module, "user32.dll", "MessageBoxW", &HostilePictures::countBox);
    for (const uintptr_t address :
         {uintptr_t{1}, uintptr_t{0x1000}, uintptr_t{0x7FFF0000}, ~uintptr_t{0}, ~uintptr_t{7}})
        EXPECT_EQ(capture(reinterpret_cast<const void*>(address)), Fate::Message) << std::hex << address;
}

TEST_F(HostilePictures, ShortenedOnesAreRefused) {
    const ImportPatch boxes(host_.module, "user32.dll", "MessageBoxW", &HostilePictures::countBox);
    const Bytes good = richPng();
    AtTheEndOfMemory memory(good.size());
    ASSERT_EQ(capture(memory.put(good)), Fate::Picture);
    std::mt19937 random(1);
    for (int round = 0; round < 100; ++round) {
        const size_t length = random() % good.size();
        const Bytes part(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
        ASSERT_EQ(capture(memory.put(part)), Fate::Message) << length << " bytes";
        endSession(round);
    }
}

TEST_F(HostilePictures, BitFlippedOnesDoNoHarm) {
    const ImportPatch boxes(host_.module, "user32.dll", "MessageBoxW", &HostilePictures::countBox);
    const Bytes good = richPng();
    AtTheEndOfMemory memory(good.size());
    std::mt19937 random(2);
    int accepted = 0;
    for (int round = 0; round < 100; ++round) {
        Bytes flipped = good;
        const unsigned flips = 1 + random() % 6;
        for (unsigned i = 0; i < flips; ++i)
            flipped[random() % flipped.size()] ^= static_cast<uint8_t>(1U << random() % 8);
        const Fate fate = capture(memory.put(flipped));
        ASSERT_TRUE(fate == Fate::Picture || fate == Fate::Message) << "round " << round;
        accepted += fate == Fate::Picture ? 1 : 0;
        endSession(round);
    }
    // Flips in the texts and the private chunks leave the pixels whole.
    EXPECT_GT(accepted, 2);
    EXPECT_LT(accepted, 50);
}

}  // namespace
}  // namespace glimmer::test
