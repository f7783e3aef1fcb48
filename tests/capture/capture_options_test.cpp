#include "capture/capture_options.h"

#include <gtest/gtest.h>

#include "settings/cached_mem_ini_file.h"
#include "settings/settings.h"

namespace glimmer {
namespace {

TEST(CaptureOptions, OutputKeepsProportions) {
    CaptureOptions options;
    EXPECT_EQ(options.outputFor({1280, 10000}), (Size{1280, 10000})) << "100 % by default";
    options.percent = 50;
    EXPECT_EQ(options.outputFor({1281, 33}), (Size{641, 17})) << "halves go up";
    options.percent = 1;
    EXPECT_EQ(options.outputFor({30, 30}), (Size{1, 1}));
    options.outputSize = CaptureOptions::OutputSize::FixedWidth;
    options.fixedWidth = 640;
    EXPECT_EQ(options.outputFor({1280, 1024}), (Size{640, 512}));
    EXPECT_EQ(options.outputFor({320, 1}), (Size{640, 2}));
    EXPECT_EQ(options.outputFor({200000, 1}), (Size{640, 1}));
    EXPECT_EQ(options.outputFor({0, 0}), (Size{0, 0}));
}

TEST(CaptureOptions, AreKeptAndRangesHold) {
    TCachedMemIniFile store{{}};
    EXPECT_EQ(CaptureOptions::load(store), CaptureOptions());
    CaptureOptions options;
    options.playSound = false;
    options.performUpdateCheck = true;
    options.outputSize = CaptureOptions::OutputSize::FixedWidth;
    options.percent = 75;
    options.fixedWidth = 333;
    options.save(store);
    EXPECT_EQ(CaptureOptions::load(store), options);
    store.writeInteger(settingsSection("IECaptureOptions"), "spnPercent", 0);
    store.writeInteger(settingsSection("IECaptureOptions"), "spnFixedWidth", 1 << 30);
    EXPECT_EQ(CaptureOptions::load(store).percent, CaptureOptions::leastPercent);
    EXPECT_EQ(CaptureOptions::load(store).fixedWidth, CaptureOptions::mostWidth);
}

}  // namespace
}  // namespace glimmer
