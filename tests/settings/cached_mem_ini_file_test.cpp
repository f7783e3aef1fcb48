#include "settings/cached_mem_ini_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "common/files.h"
#include "settings/settings.h"
#include "settings/settings_path.h"
#include "support/scratch_folder.h"

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

std::span<const uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

TCachedMemIniFile parsed(std::string_view text) { return TCachedMemIniFile::parse(bytesOf(text)); }

class SettingsFile : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(folder_);
        setSettingsFailureHandler([this](const std::string& message) { reports_.push_back(message); });
    }
    void TearDown() override { setSettingsFailureHandler({}); }
    void put(std::string_view text) const { ASSERT_TRUE(writeFile(path_, bytesOf(text)).ok()); }
    [[nodiscard]] std::string content() const {
        const auto bytes = readFile(path_, 1U << 24U);
        std::string text(bytes->begin(), bytes->end());
        std::erase(text, '\r');
        return text;
    }
    [[nodiscard]] size_t entries() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }

    const test::ScratchFolder scratch_{"settings"};
    const fs::path folder_ = scratch_.path() / pathFromUtf8("\xC3\xA9");
    fs::path path_ = folder_ / "a.ini";
    std::vector<std::string> reports_;
};

TEST(SettingsValues, AreReadByTypeAndClamped) {
    const TCachedMemIniFile store = parsed(
        "[s]\nn=12\nneg=-7\nbad=1x\nempty=\nhuge=99999999999999999999\nlow=-99999999999999999999\non=TRUE\noff=No\n"
        "one=1\nminus=-1\nzero=0\n two = x y \nN=13\n");
    EXPECT_EQ(store.readInteger("S", "N", 5), 13);  // the later of two, in any case
    EXPECT_EQ(store.readInteger("s", "neg", 5), -7);
    EXPECT_EQ(store.readInteger("s", "neg", 5, 0, 10), 0);
    EXPECT_EQ(store.readInteger("s", "n", 5, 0, 10), 10);
    EXPECT_EQ(store.readInteger("s", "huge", 5, 0, 10), 10);
    EXPECT_EQ(store.readInteger("s", "low", 5, 0, 10), 0);
    EXPECT_EQ(store.readInteger("s", "huge", 5), std::numeric_limits<int32_t>::max());
    for (const char* key : {"bad", "empty", "absent", "two"}) EXPECT_EQ(store.readInteger("s", key, 5), 5) << key;
    for (const char* key : {"on", "one", "minus"}) EXPECT_TRUE(store.readBool("s", key, false)) << key;
    for (const char* key : {"off", "zero"}) EXPECT_FALSE(store.readBool("s", key, true)) << key;
    for (const char* key : {"bad", "empty", "absent"}) EXPECT_TRUE(store.readBool("s", key, true)) << key;
    EXPECT_EQ(store.readString("s", "two"), "x y");
    EXPECT_EQ(store.readString("s", "absent", "d"), "d");
    EXPECT_EQ(store.readString("s", "empty", "d"), "");
    EXPECT_EQ(store.readString("t", "n", "d"), "d");
}

TEST_F(SettingsFile, WhatIsWrittenComesBackInItsOrder) {
    const std::string hostile = "a\r\n[b]\n=\t ";
    {
        TCachedMemIniFile store(path_);
        for (const char* key : {"Left", "Top", "Width", "Height"}) store.writeInteger("\\Root\\Form", key, 4);
        store.writeBool("\\Root\\Form", "isMaximized", true);
        store.writeString("\\Root\\Styles\\odd ]\n[style", "odd = key", hostile);
        store.writeInteger("\\Root\\Form", "Left", -3);
    }
    const TCachedMemIniFile store(path_);
    EXPECT_THAT(store.readSections(), ElementsAre("\\Root\\Form", "\\Root\\Styles\\odd ]\n[style"));
    EXPECT_THAT(store.readKeys("\\Root\\Form"), ElementsAre("Left", "Top", "Width", "Height", "isMaximized"));
    EXPECT_EQ(store.readInteger("\\Root\\Form", "Left", 0), -3);
    EXPECT_EQ(store.readString("\\Root\\Styles\\odd ]\n[style", "odd = key"), hostile);
    EXPECT_EQ(entries(), 1U);  // no lock, no temporary file
    EXPECT_TRUE(reports_.empty());
}

TEST_F(SettingsFile, CommentsStrangersAndOrderSurviveASave) {
    put("; by hand\n\n[other]\n; why\nx=1\nbroken line\n[mine]\ny=2\nz=3\n");
    {
        TCachedMemIniFile store(path_);
        store.writeString("mine", "y", "new");
        store.removeKey("mine", "z");
    }
    EXPECT_EQ(content(), "; by hand\n\n\n[other]\n\n; why\nx=1\n\n\n[mine]\ny=new\n");
    {
        TCachedMemIniFile store(path_);
        store.writeString("mine", "y", "new");  // no change: no write
        fs::remove(path_);
    }
    EXPECT_FALSE(fs::exists(path_));
}

TEST_F(SettingsFile, RemovalsAndWritesKeepTheirOrder) {
    put("[a]\nold=1\n[b]\nx=1\n");
    TCachedMemIniFile store(path_);
    store.writeString("a", "before", "1");
    store.removeSection("A");
    EXPECT_FALSE(store.sectionExists("a"));
    store.writeString("a", "after", "1");
    store.removeKey("b", "x");
    EXPECT_FALSE(store.keyExists("b", "x"));
    ASSERT_TRUE(store.save().ok());
    EXPECT_THAT(TCachedMemIniFile(path_).readSections(), ElementsAre("a"));
    EXPECT_THAT(TCachedMemIniFile(path_).readKeys("a"), ElementsAre("after"));
}

TEST_F(SettingsFile, TwoStoresKeepEachOthersValues) {
    TCachedMemIniFile first(path_);
    TCachedMemIniFile second(path_);
    first.writeString("s", "first", "1");
    second.writeString("s", "second", "2");
    second.writeString("t", "third", "3");
    ASSERT_TRUE(first.save().ok());
    EXPECT_THAT(second.readSections(), ElementsAre("s", "t"));  // the file's and the unsaved one
    ASSERT_TRUE(second.save().ok());
    EXPECT_EQ(second.readString("s", "first"), "1");
    const TCachedMemIniFile third(path_);
    EXPECT_EQ(third.readString("s", "first"), "1");
    EXPECT_EQ(third.readString("s", "second"), "2");
}

// An editor that writes over the file empties it first, and may be found at that.
TEST_F(SettingsFile, AFileThatIsEmptyForAMomentLosesNothing) {
    put("[a]\nold=1\n");
    TCachedMemIniFile store(path_);
    store.writeString("a", "new", "2");
    put("");
    ASSERT_TRUE(store.save().ok());
    EXPECT_EQ(content(), "[a]\nold=1\nnew=2\n");
}

TEST_F(SettingsFile, AFailedWriteIsReportedOnceAndLosesNothing) {
    path_ = folder_ / "not yet" / "a.ini";
    TCachedMemIniFile store(path_);
    store.writeString("s", "k", "v");
    EXPECT_FALSE(store.save().ok());
    EXPECT_FALSE(store.save().ok());
    EXPECT_EQ(reports_.size(), 1U);
    fs::create_directories(path_.parent_path());
    EXPECT_TRUE(store.save().ok());
    EXPECT_EQ(TCachedMemIniFile(path_).readString("s", "k"), "v");
    fs::remove_all(path_.parent_path());
    store.writeString("s", "k", "w");
    EXPECT_FALSE(store.save().ok());
    EXPECT_EQ(reports_.size(), 2U);
}

TEST_F(SettingsFile, AReadOnlyFileIsReportedOnceAndKept) {
    put("[s]\nk=old\n");
    fs::permissions(path_, fs::perms::owner_read | fs::perms::group_read);
    {
        TCachedMemIniFile store(path_);
        store.writeString("s", "k", "new");
        EXPECT_FALSE(store.save().ok());
        EXPECT_EQ(store.readString("s", "k"), "new");
    }
    EXPECT_EQ(reports_.size(), 1U);
    EXPECT_EQ(content(), "[s]\nk=old\n");
    EXPECT_EQ(entries(), 1U);
    fs::permissions(path_, fs::perms::owner_all);
}

TEST_F(SettingsFile, WhatCannotBeReadIsNotOverwritten) {
    put(std::string(TCachedMemIniFile::sizeLimit + 1, 'x'));
    {
        TCachedMemIniFile store(path_);
        EXPECT_EQ(store.readString("s", "k", "default"), "default");
        store.writeString("s", "k", "v");
    }
    EXPECT_EQ(fs::file_size(path_), TCachedMemIniFile::sizeLimit + 1);
    EXPECT_EQ(reports_.size(), 1U);
}

TEST_F(SettingsFile, AMegabyteLineIsKept) {
    const std::string line(1U << 20U, 'm');
    put("[s]\nlong=" + line + "\nafter=1\n[" + line + "]\nx=1\n" + line);
    {
        TCachedMemIniFile store(path_);
        EXPECT_EQ(store.readInteger("s", "after", 0), 1);
        EXPECT_EQ(store.readString("s", "long"), line);
        EXPECT_EQ(store.readInteger(line, "x", 0), 1);
        store.writeBool("s", "new", true);
    }
    EXPECT_EQ(TCachedMemIniFile(path_).readString("s", "long"), line);
}

TEST(SettingsBytes, AFileCutOffAnywhereKeepsWhatPrecedesTheCut) {
    const std::string whole =
        "; c\n[\\Software\\A]\r\nfirst=1\r\nsecond=caf\xC3\xA9\r\n[\\Software\\B]\nthird=\xE2\x82\xAC\n";
    const size_t afterFirst = whole.find("second");
    for (size_t length = 0; length <= whole.size(); ++length) {
        const TCachedMemIniFile store = parsed(whole.substr(0, length));
        EXPECT_EQ(store.readInteger("\\Software\\A", "first", 0), length >= afterFirst - 2 ? 1 : 0) << length;
        if (length > whole.find("[\\Software\\B")) {
            EXPECT_EQ(store.readString("\\Software\\A", "second"), "caf\xC3\xA9") << length;
        }
    }
}

TEST(SettingsBytes, AnyBytesAreTaken) {
    std::mt19937 random(7);
    const std::string alphabet = "[]=;#\n\r\t \"<%hex:09aA\xC3\xA9\xFF\xFE\\<<<END";
    std::uniform_int_distribution<size_t> pick(0, alphabet.size());
    std::uniform_int_distribution<size_t> lengths(0, 200);
    for (int round = 0; round < 3000; ++round) {
        std::string text(lengths(random), ' ');
        for (char& c : text) {
            const size_t i = pick(random);
            c = i < alphabet.size() ? alphabet[i] : '\0';
        }
        const TCachedMemIniFile store = parsed(text);
        for (const std::string& section : store.readSections()) {
            EXPECT_TRUE(store.sectionExists(section)) << testing::PrintToString(section);
            for (const std::string& key : store.readKeys(section)) EXPECT_TRUE(store.keyExists(section, key)) << key;
        }
    }
}

TEST_F(SettingsFile, StylesAreTheSectionsBelowTheirKey) {
    const std::string longName(1200, 'n');
    put("[\\Software\\Glimmerpad for Firefox\\Styles]\nx=1\n[\\Software\\Glimmerpad for Firefox\\StylesNot]\nx=1\n"
        "[\\Software\\Glimmerpad for Firefox\\Styles\\" +
        longName + "]\nx=1\n");
    TCachedMemIniFile store(path_);
    store.writeString(styleSection("Red Frame"), "x", "1");
    store.writeString(styleSection("a\\b]"), "x", "1");
    store.writeString(styleSection(lastUsedStyleName), "x", "1");
    EXPECT_THAT(styleNames(store), ElementsAre("", std::string(1000, 'n'), "Red Frame", "a\\b]", lastUsedStyleName));
}

TEST_F(SettingsFile, TheSharedStoreFollowsThePath) {
    setSettingsPath(utf8FromPath(path_));
    settings().writeString(settingsSection(group::general), "k", "v");
    setSettingsPath(utf8FromPath(folder_ / "b.ini"));
    EXPECT_EQ(content(), "[\\Software\\Glimmerpad for Firefox\\General]\nk=v\n");
    EXPECT_EQ(settings().readString(settingsSection(group::general), "k"), "");
    setSettingsPath("");
    settings().writeString("s", "k", "v");
    EXPECT_TRUE(settings().save().ok());
    closeSettings();
    EXPECT_EQ(entries(), 1U);
}

}  // namespace
}  // namespace glimmer
