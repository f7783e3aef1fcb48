#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/files.h"
#include "common/host_kind.h"
#include "common/shell_start.h"
#include "editor/commands/add_annotation.h"
#include "editor/commands/set_info.h"
#include "editor/document/document.h"
#include "output/spoken_saver.h"
#include "output/ways/save_dialogs.h"
#include "settings/options.h"
#include "settings/settings.h"
#include "settings/settings_path.h"
#include "support/pictures.h"
#include "support/recorded_messages.h"
#include "support/scratch_folder.h"
#include "support/windows/forms.h"

namespace glimmer {

/// Answers every question for a file with the same one.
class FixedDialogs : public SaveDialogs {
public:
    std::filesystem::path path;  ///< empty: the user gives up
    PictureFormat format = PictureFormat::Png;

    std::optional<PictureTarget> askPicture(const std::filesystem::path& /*folder*/, const std::string& name,
                                            PictureFormat /*format*/) override {
        proposed = name;
        if (path.empty()) return std::nullopt;
        return PictureTarget{path, format};
    }
    std::optional<PictureTarget> askFolder(const std::filesystem::path& /*folder*/, PictureFormat /*format*/) override {
        if (path.empty()) return std::nullopt;
        return PictureTarget{path.parent_path(), format};
    }
    std::optional<std::filesystem::path> askProject(const std::filesystem::path& /*folder*/,
                                                    const std::string& name) override {
        return given(name);
    }
    std::optional<std::filesystem::path> askPage(const std::filesystem::path& /*folder*/,
                                                 const std::string& name) override {
        return given(name);
    }
    std::string proposed;

private:
    std::optional<std::filesystem::path> given(const std::string& name) {
        proposed = name;
        return path.empty() ? std::nullopt : std::optional(path);
    }
};

/// Starts nothing and remembers what should have been started.
class RecordedStarts : public ShellStart {
public:
    bool open(const std::string& target, const std::string& parameters) override {
        started.emplace_back(target, parameters);
        return works;
    }
    std::vector<std::pair<std::string, std::string>> started;
    bool works = true;
};

/// A saver with settings and folders of its own; nobody is asked and nothing is started.
class SaverTest : public testing::Test {
protected:
    void SetUp() override {
        setSettingsPath(utf8FromPath(scratch_.path() / "settings.ini"));
        std::filesystem::create_directories(folder());
        OptionsHolder().setText("edtWorkingFolderPath", utf8FromPath(work()));
        OptionsHolder().setText("edtFilenameTemplate", "%t");
        setSaveDialogs(&dialogs_);
        setShellStart(&starts_);
    }
    void TearDown() override {
        setSaveDialogs(nullptr);
        setShellStart(nullptr);
        closeSettings();
        setSettingsPath({});
    }

    [[nodiscard]] std::filesystem::path folder() const { return scratch_.path() / "saved"; }
    [[nodiscard]] std::filesystem::path work() const { return scratch_.path() / "work"; }
    [[nodiscard]] static size_t entriesOf(const std::filesystem::path& path) {
        return static_cast<size_t>(
            std::distance(std::filesystem::directory_iterator(path), std::filesystem::directory_iterator()));
    }

    static std::unique_ptr<CaptureDocument> capture(TBitmap picture, const std::string& name) {
        CaptureInfo info;
        info.url = "http://example.org/" + name;
        info.title = name;
        info.name = name;
        info.captured = 1700000000;
        return CaptureDocument::create(std::move(picture), info).take();
    }
    /// Two annotations, one with a label, and notes.
    static void annotate(CaptureDocument& document, const std::string& text) {
        TBBShape frame(TShapeStyle{}, {10, 10, 60, 40});
        frame.shape.setVisible(true);
        TBBShape label(TShapeStyle{}, {20, 50, 90, 70});
        label.text.text = text;
        label.text.rectangle = {20, 50, 90, 70};
        label.text.setVisible(true);
        ASSERT_TRUE(document.run(std::make_unique<AddAnnotation>(frame)).ok());
        ASSERT_TRUE(document.run(std::make_unique<AddAnnotation>(label)).ok());
        ASSERT_TRUE(document.run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "notes on " + text)).ok());
    }
    /// So many pixels, so hard to pack, that writing it takes long enough to be waited for.
    static std::unique_ptr<CaptureDocument> largeCapture(const std::string& name) {
        return capture(test::noise(1280, 10000, PixelFormat::Bgra32, 7), name);
    }

    test::ScratchFolder scratch_{"saver"};
    test::RecordedMessages messages_;
    FixedDialogs dialogs_;
    RecordedStarts starts_;
    TSaver silent_;
    SpokenSaver saver_{silent_};
};

}  // namespace glimmer
