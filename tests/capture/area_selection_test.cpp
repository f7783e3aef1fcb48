#include "capture/overlay/area_selection.h"

#include <gtest/gtest.h>

#include "capture/capture_request.h"
#include "capture/overlay/magnifier.h"
#include "support/pictures.h"

namespace glimmer {

std::ostream& operator<<(std::ostream& out, const Rect& r) {
    return out << r.left << ',' << r.top << '-' << r.right << ',' << r.bottom;
}

namespace {

using State = AreaSelection::State;

/// Two monitors, the second to the left of the first and lower.
const Rect screen{-1024, 0, 1280, 1024};
const FramesUnderPointer frames{{110, 120, 200, 140}, {90, 90, 700, 500}, {0, 0, 1280, 1024}};
const SelectionModifiers none;
const SelectionModifiers shift{true, false, false};
const SelectionModifiers ctrl{false, true, false};
const SelectionModifiers space{false, false, true};

TEST(AreaSelection, FramesWhatIsUnderThePointerAndTheWheelGoesOutwards) {
    AreaSelection selection(screen, {0, 0}, false);
    EXPECT_TRUE(selection.area().empty());
    selection.move({120, 130}, frames, none);
    EXPECT_EQ(selection.area(), frames[0]);
    selection.wheel(1);
    selection.move({122, 130}, frames, none);
    EXPECT_EQ(selection.area(), frames[1]);
    selection.wheel(5);
    EXPECT_EQ(selection.framed(), 2U);
    selection.wheel(-1);
    selection.press();
    selection.move({124, 131}, frames, none);
    selection.release(none);
    EXPECT_EQ(selection.state(), State::Taken);
    EXPECT_EQ(selection.area(), frames[1]);
    EXPECT_EQ(selection.framed(), 1U);
}

TEST(AreaSelection, DragsMovesNudgesAndStaysOnTheScreen) {
    AreaSelection selection(screen, {-500, 300}, false);
    selection.move({-500, 300}, frames, none);
    selection.press();
    selection.move({-600, 250}, {}, none);
    EXPECT_EQ(selection.area(), (Rect{-600, 250, -499, 301}));
    selection.move({-600, 250}, {}, shift);
    EXPECT_EQ(selection.area(), (Rect{-600, 200, -499, 301}));
    selection.move({-600, 250}, {}, none);
    selection.move({-1020, 255}, {}, space);
    EXPECT_EQ(selection.area(), (Rect{-1020, 255, -919, 306}));
    selection.move({-1024, 255}, {}, space);
    selection.move({-2000, 255}, {}, space);
    EXPECT_EQ(selection.area(), (Rect{-1024, 255, -923, 306}));
    const std::optional<Point> to = selection.key(SelectionKey::Right, shift);
    ASSERT_TRUE(to);
    EXPECT_EQ(*to, (Point{-1014, 255}));
    selection.move(*to, {}, none);
    EXPECT_EQ(selection.area().width(), 91);
    selection.release(none);
    EXPECT_EQ(selection.state(), State::Taken);
    // A square has room on both sides.
    AreaSelection corner(screen, {1270, 10}, false);
    corner.press();
    corner.move({2000, 500}, {}, shift);
    EXPECT_EQ(corner.area(), (Rect{1270, 10, 1280, 20}));
    corner.key(SelectionKey::Escape, none);
    EXPECT_EQ(corner.state(), State::Left);
}

TEST(AreaSelection, TakesATypedSize) {
    AreaSelection selection(screen, {0, 0}, false);
    selection.move({100, 100}, frames, none);
    for (const char c : std::string("x80a0x6010")) selection.type(c);
    EXPECT_EQ(selection.typed(), "800x6010");
    selection.key(SelectionKey::Backspace, none);
    selection.move({100, 310}, frames, none);
    EXPECT_EQ(selection.area(), (Rect{-300, 10, 500, 611}));
    selection.move({1200, 1000}, frames, none);
    EXPECT_EQ(selection.area(), (Rect{480, 423, 1280, 1024}));
    selection.press();
    EXPECT_EQ(selection.state(), State::Taken);
    EXPECT_EQ(selection.area(), (Rect{480, 423, 1280, 1024}));
}

TEST(AreaSelection, AChosenAreaCanBeChangedBeforeItIsTaken) {
    AreaSelection selection(screen, {10, 10}, true);
    selection.press();
    selection.move({109, 59}, {}, none);
    selection.release(none);
    ASSERT_EQ(selection.state(), State::Chosen);
    selection.key(SelectionKey::Left, none);
    selection.key(SelectionKey::Down, shift);
    selection.key(SelectionKey::Right, ctrl);
    EXPECT_EQ(selection.area(), (Rect{9, 20, 110, 70}));
    selection.move({50, 40}, {}, none);
    selection.press();
    selection.move({-60, 40}, {}, none);
    selection.release(none);
    EXPECT_EQ(selection.area(), (Rect{-101, 20, 0, 70}));
    selection.move({0, 70}, {}, none);
    selection.press();
    selection.move({20, 400}, {}, none);
    selection.release(none);
    EXPECT_EQ(selection.area(), (Rect{-101, 20, 20, 400}));
    for (const char c : std::string("64x48")) selection.type(c);
    EXPECT_EQ(selection.area(), (Rect{-101, 20, -37, 68}));
    selection.move({-90, 40}, {}, none);
    selection.doubleClick();
    EXPECT_EQ(selection.state(), State::Taken);
    // Held Ctrl turns round what the release does.
    AreaSelection other(screen, {10, 10}, true);
    other.press();
    other.move({60, 60}, {}, none);
    other.release(ctrl);
    EXPECT_EQ(other.state(), State::Taken);
}

TEST(Magnifier, ShowsEachPixelWithItsGrid) {
    const TBitmap shown = test::noise(40, 30, PixelFormat::Bgra32, 5);
    const Magnifier magnifier{5, 6};
    TBitmap target = test::plain(50, 50, rgb(1, 2, 3));
    magnifier.paint(target, {10, 10}, shown, {-20, 0}, {-20, 3});
    EXPECT_EQ(target.pixel(10 + 4 * 6, 10), shown.pixel(2, 1));
    EXPECT_EQ(target.pixel(10 + 2 * 6 + 2, 10 + 2 * 6 + 2), shown.pixel(0, 3));
    EXPECT_NE(target.pixel(10 + 4 * 6 + 5, 10), shown.pixel(2, 1));
    EXPECT_EQ(target.pixel(10, 10), rgb(40, 40, 40));
    EXPECT_EQ(target.pixel(9, 10), rgb(1, 2, 3));
    EXPECT_EQ(target.pixel(10 + magnifier.side(), 20), rgb(1, 2, 3));
    EXPECT_EQ(colourText(rgb(255, 10, 0)), "#FF0A00");
}

TEST(CaptureRequests, AreReadFromCommandLinesAndRefusedWithASentence) {
    EXPECT_FALSE(readCaptureArguments({"picture.png", "-CAPTURE"}));
    const CaptureRequest plain{CaptureKind::Desktop, 0, 0, ""};
    EXPECT_EQ(**readCaptureArguments({"-capture", "Desktop"}), plain);
    const CaptureRequest full{CaptureKind::Region, 3, 105, "C:\\a b\\c.png"};
    EXPECT_EQ(**readCaptureArguments(captureArguments(full)), full);
    EXPECT_EQ((*readCaptureArguments({"-CAPTURE", "last", "-FILE", "x.png"}))->action, 6);
    for (const std::vector<std::string>& wrong :
         std::vector<std::vector<std::string>>{{"-CAPTURE"},
                                               {"-CAPTURE", "moon"},
                                               {"-CAPTURE", "region", "-DELAY"},
                                               {"-CAPTURE", "region", "-DELAY", "601"},
                                               {"-CAPTURE", "region", "-DELAY", "3s"},
                                               {"-CAPTURE", "region", "-ACTION", "8"},
                                               {"-CAPTURE", "region", "-ACTION", "200"},
                                               {"-CAPTURE", "region", "-FILE"},
                                               {"-CAPTURE", "region", "else"}}) {
        const auto read = readCaptureArguments(wrong);
        ASSERT_TRUE(read);
        EXPECT_FALSE(read->message().empty()) << wrong.back();
    }
}

TEST(CaptureRequests, PresetsComeBackFromTheSettings) {
    const std::vector<CapturePreset> presets{{0x404C, {CaptureKind::Region, 0, 5, ""}},
                                             {0, {CaptureKind::Window, 3, 102, ""}}};
    EXPECT_EQ(readPresets(presetsText(presets)), presets);
    EXPECT_EQ(readPresets("; 12 moon 0 0; 5 region 0; 70000 last 0 0;x;1 desktop 0 8;7 LAST 600 10 ;").size(), 1U);
    EXPECT_EQ(presetCaption(presets[1].request), "Window in front, after 3 s, then copy");
}

}  // namespace
}  // namespace glimmer
