#include "settings/options.h"

#include <gtest/gtest.h>

#include <set>

#include "settings/settings.h"
#include "settings/settings_path.h"
#include "support/assertions.h"

namespace glimmer {
namespace {

constexpr const char* general = "\\Software\\Glimmerpad for Firefox\\General";

class OptionValues : public testing::Test {
protected:
    void SetUp() override { setHostKind(HostKind::Standalone); }
    void TearDown() override { setHostKind(HostKind::Standalone); }
    TCachedMemIniFile store_{std::filesystem::path()};
    Options options_;
};

TEST(OptionTable, IsConsistent) {
    std::set<std::string_view> controls;
    for (const Option& option : optionTable()) {
        EXPECT_TRUE(controls.insert(option.control).second) << option.control;
        EXPECT_LE(option.least, option.standard) << option.control;
        EXPECT_LE(option.standard, option.most) << option.control;
        EXPECT_EQ(optionTable()[optionIndex(option.control)].control, option.control);
    }
    test::expectAssertion("pControl!=NULL", "uFormOptions", [] { (void)Options().on("chkNoSuchThing"); });
}

TEST_F(OptionValues, ComeBackFromTheFile) {
    // Every option gets a value that is not its default.
    for (const Option& option : optionTable()) {
        if (option.kind == OptionKind::Text) {
            options_.setText(option.control, "text of " + std::string(option.control));
        } else if (option.kind != OptionKind::Radio) {
            options_.setNumber(option.control, option.standard == option.most ? option.least : option.standard + 1);
        }
    }
    options_.setOn("radWMFromBitmap", true);
    EXPECT_FALSE(options_.on("radWMFromText"));
    options_.store(store_);
    Options loaded;
    EXPECT_NE(loaded, options_);
    loaded.load(store_);
    EXPECT_EQ(loaded, options_);
    EXPECT_EQ(store_.readString(general, "spnBlurIntensity"), "26");
}

TEST_F(OptionValues, OutsideTheirRangeAreMovedIntoIt) {
    const struct {
        const char* control;
        const char* stored;
        int32_t read;
    } cases[] = {
        {"spnNextNum", "0", 1},
        {"spnNextNum", "40000", 32767},
        {"spnNumberPadding", "1", 2},
        {"spnNumberPadding", "11", 10},
        {"spnBlurIntensity", "-5", 1},
        {"spnWMFrameWidth", "21", 20},
        {"spnWMFrameWidth", "x", 1},
        {"cmbWMPosition", "99", 8},
        {"cmbNumberPlacement", "-1", 0},
        {"hotCreateZK", "131072", 0xFFFF},
        {"clrPenColor", "4294967295", 0xFFFFFF},
        {"chkAddURL", "TRUE", 1},
    };
    for (const auto& c : cases) {
        store_.writeString(general, c.control, c.stored);
        options_.load(store_);
        EXPECT_EQ(options_.number(c.control), c.read) << c.control << " " << c.stored;
    }
    for (const bool both : {true, false}) {
        store_.writeBool(general, "radWMFromBitmap", both);
        store_.writeBool(general, "radWMFromText", both);
        options_.load(store_);
        EXPECT_TRUE(options_.on("radWMFromText"));
        EXPECT_FALSE(options_.on("radWMFromBitmap"));
    }
}

TEST_F(OptionValues, TheNameTemplateDependsOnTheHost) {
    EXPECT_EQ(options_.text("edtFilenameTemplate"), "ZK Screen Capture #%n");
    setHostKind(HostKind::Chrome);
    options_.load(store_);
    EXPECT_EQ(options_.text("edtFilenameTemplate"), "Vistrane Screen Capture #%n - '%t' - %u");
}

TEST_F(OptionValues, ListenersHearOfASave) {
    setSettingsPath("");
    int first = 0;
    int second = 0;
    auto other = std::make_unique<OptionsListener>([&second] { ++second; });
    {
        const OptionsListener listener([&] {
            ++first;
            other.reset();
        });
        auto late = std::make_unique<OptionsListener>([&second] { ++second; });
        saveOptions();
    }
    saveOptions();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

}  // namespace
}  // namespace glimmer
