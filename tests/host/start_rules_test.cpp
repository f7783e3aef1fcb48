#include "host/program/start_rules.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace glimmer {
namespace {

TEST(HostKinds, FirefoxIsRefinedByTheProgramsName) {
    struct Case {
        HostKind proposed;
        const char* program;
        HostKind kind;
    };
    for (const Case& c : {
             Case{HostKind::Firefox, "firefox.exe", HostKind::Firefox},
             Case{HostKind::Firefox, "Thunderbird.exe", HostKind::Thunderbird},
             Case{HostKind::Firefox, "my-SeaMonkey-2.exe", HostKind::SeaMonkey},
             Case{HostKind::Firefox, "vistrane-container.exe", HostKind::InternetExplorer},
             Case{HostKind::Firefox, "seamonkey-thunderbird.exe", HostKind::Thunderbird},
             Case{HostKind::Chrome, "thunderbird.exe", HostKind::Chrome},
             Case{HostKind::InternetExplorer, "seamonkey.exe", HostKind::InternetExplorer},
             Case{static_cast<HostKind>(99), "thunderbird.exe", static_cast<HostKind>(99)},
         }) {
        EXPECT_EQ(refinedHostKind(c.proposed, c.program), c.kind) << c.program;
    }
}

TEST(SettingsFiles, ProfileStandsBeforeTheExtensions) {
    EXPECT_EQ(profileFolder("C:\\Profiles\\a.default\\extensions\\x@y\\"), "C:\\Profiles\\a.default\\");
    EXPECT_EQ(profileFolder("C:\\Pr\xC3\x84\\ExTensions\\x\\extensions\\"), "C:\\Pr\xC3\x84\\");
    EXPECT_EQ(profileFolder("C:\\elsewhere\\"), "C:\\elsewhere\\");
}

TEST(SettingsFiles, EachKindHasItsOwn) {
    using Where = SettingsPlace::Where;
    struct Case {
        int kind;
        const char* file;
        Where where;
        const char* folder;
    };
    for (const Case& c : {Case{0, "zk_settings.ini", Where::LibraryFolderIfWritable, "Glimmerpad"},
                          Case{1, "vx_fx_settings.ini", Where::ProfileFolder, ""},
                          Case{2, "vx_ie_settings.ini", Where::LibraryFolderIfWritable, "Vistrane"},
                          Case{3, "vx_tb_settings.ini", Where::ProfileFolder, ""},
                          Case{4, "vx_sm_settings.ini", Where::ProfileFolder, ""},
                          Case{5, "vx_chrome_settings.ini", Where::UserFolder, "Vistrane"},
                          Case{6, "def_settings.ini", Where::LibraryFolder, ""},
                          Case{255, "def_settings.ini", Where::LibraryFolder, ""}}) {
        const SettingsPlace place = settingsPlace(static_cast<HostKind>(c.kind));
        EXPECT_EQ(place.fileName, c.file);
        EXPECT_EQ(place.where, c.where) << c.kind;
        EXPECT_EQ(place.userFolder, c.folder) << c.kind;
    }
}

TEST(Arguments, SwitchesCountOnlyInTheirPlaces) {
    struct Case {
        std::vector<std::string> arguments;
        bool terminate;
        bool single;
        std::string file;
    };
    for (const Case& c :
         {Case{{}, false, true, ""}, Case{{"-terminate"}, true, true, "-terminate"},
          Case{{"a.png", "-TERMINATE"}, false, true, "a.png"}, Case{{"-Multi"}, false, false, ""},
          Case{{"-MULTI", "a.png"}, false, false, "a.png"}, Case{{"a.png", "-multi"}, false, false, "a.png"},
          Case{{"a.png", "b.png", "-MULTI"}, false, true, "a.png"}, Case{{"-Tray"}, false, true, ""},
          Case{{"-TRAY", "a.png"}, false, true, "a.png"}}) {
        const StartRequest request = readArguments(c.arguments);
        EXPECT_EQ(request.terminate, c.terminate);
        EXPECT_EQ(request.singleInstance, c.single);
        EXPECT_EQ(request.file.value_or(""), c.file);
    }
}

TEST(HandOver, TakesTheCommandLineFromTheFirstArgumentOn) {
    const std::string folder = "C:\\Program\\";
    struct Case {
        const char* line;
        const char* first;
        std::string text;
        std::string file;
    };
    for (const Case& c : {
             Case{"\"C:\\p\\g.exe\" C:\\x\\a.png", "C:\\x\\a.png", "C:\\x\\a.png", "C:\\x\\a.png"},
             Case{"g.exe \"C:\\my pictures\\a b.png\"", "C:\\my pictures\\a b.png", "C:\\my pictures\\a b.png\"",
                  "C:\\my pictures\\a b.png"},
             Case{"g.exe \"C:\\d\\a.png\" -x \"b\"", "C:\\d\\a.png", "C:\\d\\a.png\" -x \"b\"", "C:\\d\\a.png"},
             Case{"g.exe a.png", "a.png", folder + "a.png", folder + "a.png"},
             Case{"g.exe \"a b.png\"", "a b.png", folder + "a b.png\"", folder + "a b.png"},
             Case{"g.exe sub\\a.png", "sub\\a.png", "sub\\a.png", "sub\\a.png"},
             // The text is looked for from the line's start on.
             Case{"a.exe a", "a", folder + "a.exe a", folder + "a.exe a"},
             Case{"g.exe \"a\\\"b\"", "a\"b", folder + "a\"b", folder + "a"},
         }) {
        const std::string text = handOverText(c.line, c.first, folder);
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(handedOverFile(text), c.file);
    }
    EXPECT_EQ(handOverText("g.exe \"sub\\a.png\" b", "sub\\a.png", folder, "D:\\here\\sub\\a.png"),
              "D:\\here\\sub\\a.png\" b");
    const std::string longest = "C:\\" + std::string(20000, 'x');
    EXPECT_EQ(handOverText("g.exe " + longest, longest, folder), longest.substr(0, 10000));
}

TEST(CaptureCodes, HundredMutes) {
    for (const auto& [code, action, silent] :
         {std::tuple{5, 5, false}, std::tuple{99, 99, false}, std::tuple{100, 0, true}, std::tuple{105, 5, true},
          std::tuple{210, 10, true}, std::tuple{-5, -5, false}}) {
        EXPECT_EQ(static_cast<int32_t>(splitCaptureCode(code).action), action) << code;
        EXPECT_EQ(splitCaptureCode(code).silent, silent) << code;
    }
}

TEST(Integration, IsOfferedOnceItsMomentHasCome) {
    for (const auto& [host, delivered, edited] :
         {std::tuple{HostKind::Standalone, true, false}, std::tuple{HostKind::Firefox, true, true},
          std::tuple{HostKind::InternetExplorer, false, true}, std::tuple{HostKind::Chrome, false, true}}) {
        EXPECT_EQ(offersIntegration(host, IntegrationMoment::Delivered), delivered) << static_cast<int>(host);
        EXPECT_EQ(offersIntegration(host, IntegrationMoment::Edited), edited) << static_cast<int>(host);
    }
}

TEST(WindowAfterACapture, ComesBackOnlyForWhatIsToBeEditedThere) {
    struct Row {
        bool edit, made;
        DisplayState state;
        const char* inHost;  // one letter each for a window that is there and one that the user hid
        const char* alone;
    };
    for (const Row& row :
         {Row{true, true, DisplayState::Shown, "SL", "SL"}, Row{true, true, DisplayState::Away, "SS", "SS"},
          Row{true, false, DisplayState::Shown, "SL", "LL"}, Row{true, false, DisplayState::Away, "SS", "LS"},
          Row{false, true, DisplayState::Shown, "SR", "RR"}, Row{false, true, DisplayState::Away, "SR", "RR"},
          Row{false, false, DisplayState::Away, "SR", "RR"}, Row{true, true, DisplayState::Held, "LL", "LL"},
          Row{false, true, DisplayState::Held, "LL", "LL"}}) {
        const auto moves = [&row](bool standalone) {
            std::string seen;
            for (const bool hidden : {false, true})
                seen += "LRS"[static_cast<int>(windowMoveAfter(row.edit ? CaptureAction::Edit : CaptureAction::Copy,
                                                               row.made, row.state, hidden, standalone))];
            return seen;
        };
        SCOPED_TRACE(testing::Message() << row.edit << row.made << static_cast<int>(row.state));
        EXPECT_EQ(moves(false), row.inHost);
        EXPECT_EQ(moves(true), row.alone);
    }
}

}  // namespace
}  // namespace glimmer
