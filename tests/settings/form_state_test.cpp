#include "settings/form_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/hot_key.h"
#include "support/assertions.h"

namespace glimmer {
namespace {

using testing::ElementsAre;

constexpr const char* section = "\\Software\\Glimmerpad for Firefox\\Form";

struct FakeControl : FormControl {
    FakeControl(std::string name, ControlClass kind, int32_t value, int32_t least, int32_t most)
        : name_(std::move(name)), kind_(kind), value_(value), least_(least), most_(most) {}
    [[nodiscard]] std::string name() const override { return name_; }
    [[nodiscard]] ControlClass controlClass() const override { return kind_; }
    [[nodiscard]] int32_t value() const override { return value_; }
    void setValue(int32_t value) override { value_ = value; }
    [[nodiscard]] int32_t least() const override { return least_; }
    [[nodiscard]] int32_t most() const override { return most_; }
    std::string name_;
    ControlClass kind_;
    int32_t value_, least_, most_;
};

TEST(FormState, IsKeptByClassUnderTheControlsName) {
    TCachedMemIniFile store{std::filesystem::path()};
    const struct {
        FakeControl control;
        const char* stored;
        const char* later;  // what another version wrote
        int32_t read;
    } cases[] = {
        {{"spnA", ControlClass::UpDown, 7, 1, 11}, "7", "12", 11},
        {{"chkA", ControlClass::CheckBox, 1, 0, 1}, "1", "0", 0},
        {{"radA", ControlClass::RadioButton, 0, 0, 1}, "0", "true", 1},
        {{"cmbA", ControlClass::ComboBox, 2, -1, 3}, "2", "-1", -1},
        {{"cmbEmpty", ControlClass::ComboBox, -1, 0, -1}, "-1", "2", -1},
        {{"clrA", ControlClass::ColorBox, 0xD8FEFE, 0, 0xFFFFFF}, "14221054", "16777216", 0xFFFFFF},
        {{"hotA", ControlClass::HotKey, 0x4044, 0, 0xFFFF}, "16452", "rubbish", 0x4044},
    };
    for (const auto& c : cases) {
        FakeControl control = c.control;
        restoreControl(store, section, &control);
        EXPECT_EQ(control.value_, c.control.value_) << control.name_;  // nothing stored: as it was
        saveControl(store, section, &control);
        EXPECT_EQ(store.readString(section, control.name_), c.stored) << control.name_;
        store.writeString(section, control.name_, c.later);
        restoreControl(store, section, &control);
        EXPECT_EQ(control.value_, c.read) << control.name_;
    }
    FakeControl other{"edtA", ControlClass::Other, 3, 0, 9};
    saveControl(store, section, &other);
    EXPECT_FALSE(store.keyExists(section, "edtA"));
}

TEST(FormState, AMissingControlIsAFatalError) {
    TCachedMemIniFile store{std::filesystem::path()};
    test::expectAssertion("pControl!=NULL", "uFormOptions", [&] { saveControl(store, section, nullptr); });
    test::expectAssertion("pControl!=NULL", "uFormOptions", [&] { restoreControl(store, section, nullptr); });
}

TEST(FormGeometry, IsWrittenInItsOrder) {
    TCachedMemIniFile form{std::filesystem::path()};
    TCachedMemIniFile panel{std::filesystem::path()};
    const WindowGeometry geometry{{10, -20, 310, 180}, true};
    saveGeometry(form, section, geometry, true);
    saveGeometry(panel, section, geometry, false);
    EXPECT_THAT(form.readKeys(section), ElementsAre("isMaximized", "Left", "Top", "Width", "Height"));
    EXPECT_THAT(panel.readKeys(section), ElementsAre("Left", "Top", "Width", "Height"));
    EXPECT_EQ(form.readString(section, "Height"), "200");
    EXPECT_EQ(restoreGeometry(form, section, {}, {}), geometry);
}

TEST(FormGeometry, ComesBackOntoAMonitorThatExists) {
    const Rect left{0, 0, 1920, 1040};
    const Rect right{1920, 200, 3200, 1224};
    const std::vector<WorkArea> areas{{left}, {right}};
    const struct {
        const char* what;
        Rect stored;
        Rect shown;
    } cases[] = {
        {"inside", {100, 100, 900, 700}, {100, 100, 900, 700}},
        {"across both", {1700, 300, 2500, 900}, {1700, 300, 2500, 900}},
        {"mostly off to the left, title bar in reach", {-700, 50, 100, 650}, {-700, 50, 100, 650}},
        {"too little of the title bar", {-760, 50, 40, 650}, {0, 50, 800, 650}},
        {"title bar above the screen", {100, -10, 900, 590}, {100, 0, 900, 600}},
        {"below the screen", {100, 1100, 900, 1700}, {100, 440, 900, 1040}},
        {"monitor to the right is gone", {4000, 300, 4800, 900}, {2400, 300, 3200, 900}},
        {"larger than any", {-100, -100, 5000, 5000}, {0, 0, 1920, 1040}},
    };
    for (const auto& c : cases) {
        TCachedMemIniFile store{std::filesystem::path()};
        saveGeometry(store, section, {c.stored, false}, true);
        EXPECT_EQ(restoreGeometry(store, section, {}, areas).bounds, c.shown) << c.what;
    }
    TCachedMemIniFile damaged{std::filesystem::path()};
    damaged.writeString(section, "Left", "99999999999");
    damaged.writeString(section, "Width", "-5");
    const Rect shown = restoreGeometry(damaged, section, {{50, 60, 450, 360}, false}, areas).bounds;
    EXPECT_EQ(shown, (Rect{2800, 200, 3200, 500}));
}

TEST(FormGeometry, IsAsLargeToTheEyeOnAMonitorOfAnotherScale) {
    const std::vector<WorkArea> areas{{{0, 0, 1920, 1040}, 96}, {{1920, 0, 4800, 1740}, 144}};
    const struct {
        const char* what;
        WindowGeometry stored;
        Rect shown;
    } cases[] = {
        {"where it was", {{2000, 100, 2900, 700}, false, 144}, {2000, 100, 2900, 700}},
        {"its monitor was made larger", {{2000, 100, 2900, 700}, false, 96}, {2000, 100, 3350, 1000}},
        {"its monitor was made smaller", {{100, 100, 1000, 700}, false, 144}, {100, 100, 700, 500}},
        {"its monitor is gone", {{9000, 100, 9600, 500}, true, 192}, {4350, 100, 4800, 400}},
        {"larger than there is room for", {{2000, 0, 4400, 1200}, false, 96}, {2000, 0, 4880, 1740}},
    };
    for (const auto& c : cases) {
        TCachedMemIniFile store{std::filesystem::path()};
        saveGeometry(store, section, {c.stored.bounds, false, 120}, true);
        saveGeometry(store, section, c.stored, true);
        const WindowGeometry restored = restoreGeometry(store, section, {}, areas);
        EXPECT_EQ(restored.bounds, c.shown) << c.what;
        // And the next times, without anybody touching it.
        saveGeometry(store, section, restored, true);
        EXPECT_EQ(restoreGeometry(store, section, {}, areas), restored) << c.what;
    }
}

TEST(HotKey, ReadsAsItIsPressed) {
    EXPECT_EQ(hotKeyText(0x2C), "Print Screen");
    EXPECT_EQ(hotKeyText(hotKeyCtrl | 'D'), "Ctrl+D");
    EXPECT_EQ(hotKeyText(hotKeyCtrl | hotKeyShift | hotKeyAlt | 0x7B), "Ctrl+Shift+Alt+F12");
    EXPECT_EQ(hotKeyText(hotKeyAlt | 0x65), "Alt+Num 5");
    EXPECT_EQ(hotKeyText(hotKeyAlt), "None");
    EXPECT_EQ(hotKeyText(0xE8), "Key 232");
    for (const int32_t key : {0x2C, 0x70, 0x13, hotKeyShift | 0x87, hotKeyAlt | 'A', hotKeyCtrl | 0x20})
        EXPECT_TRUE(mayBeGlobal(key)) << hotKeyText(key);
    for (const int32_t key : {int32_t{'A'}, hotKeyShift | '1', 0x20, 0x25, 0x2D, 0xBA, 0x6B})
        EXPECT_FALSE(mayBeGlobal(key)) << hotKeyText(key);
}

}  // namespace
}  // namespace glimmer
