#pragma once

#include <wx/hyperlink.h>
#include <wx/listctrl.h>

#include "common/section_memory.h"
#include "common/tool_button.h"
#include "editor/window/uEditor.h"
#include "main_window/uMainEditor.h"
#include "output/saver_fixture.h"

namespace glimmer {

/// A main editor window on the screen, with settings and folders of its own; nobody is asked and nothing is started.
class MainEditorTest : public SaverTest {
protected:
    void SetUp() override {
        SaverTest::SetUp();
        setPixelAllocator(sectionPixelMemory);  // as in the program
        open();
        editor_->showRoutine();
        ASSERT_TRUE(test::bringForward(*editor_));
    }
    void open() {
        editor_ = new TMainEditor(silent_, recovery_.path());  // destroyed by its Close
        pMainEditor = editor_;
    }
    void TearDown() override {
        if (pMainEditor != nullptr) editor_->Close(true);
        ASSERT_TRUE(test::pumpUntil([] { return pMainEditor == nullptr; }));
        setPixelAllocator(nullptr);
        SaverTest::TearDown();
    }

    static std::unique_ptr<CaptureDocument> grey(const std::string& name, Size size = {300, 200}) {
        return capture(test::plain(size.width, size.height, rgb(240, 240, 240)), name);
    }
    /// New captures of these names, in this order.
    void add(const std::vector<std::string>& names) const {
        for (const std::string& name : names) session().add(grey(name));
        test::pump();  // the buttons become usable
    }
    [[nodiscard]] CaptureSession& session() const { return editor_->session(); }
    [[nodiscard]] wxListCtrl& list() const { return *test::find<wxListCtrl>(*editor_, "lvAnnotations"); }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const CaptureDocument* document : session().all()) all.push_back(document->info().name);
        return all;
    }
    [[nodiscard]] ToolButton& button(const char* name) const { return *test::find<ToolButton>(*editor_, name); }
    void clickLabel(const char* name) const {
        wxWindow* label = test::findControl(*editor_, name);
        wxHyperlinkEvent event(label, wxID_ANY, "");
        label->ProcessWindowEvent(event);
    }
    [[nodiscard]] int imageOf(long place) const {
        wxListItem item;
        item.SetId(place);
        item.SetMask(wxLIST_MASK_IMAGE);
        list().GetItem(item);
        return item.GetImage();
    }
    /// Of the middle of a thumbnail.
    [[nodiscard]] int redOfThumbnail(long place) const {
        const wxImage image = list().GetImageList(wxIMAGE_LIST_NORMAL)->GetBitmap(imageOf(place)).ConvertToImage();
        return image.GetRed(image.GetWidth() / 2, image.GetHeight() / 2);
    }
    /// The middle of an item, in the list's window.
    [[nodiscard]] wxPoint itemPoint(long item) const {
        list().EnsureVisible(item);
        wxRect area;
        EXPECT_TRUE(list().GetItemRect(item, area, wxLIST_RECT_ICON));
        return {area.x + area.width / 2, area.y + area.height / 2};
    }

    test::ScratchFolder recovery_{"main editor"};
    TMainEditor* editor_ = nullptr;
};

}  // namespace glimmer
