// The main editor window: empty, with one, six and forty captures, narrow, with its tool bar in each size.

#include <wx/msw/wrapwin.h>

#include <chrono>

#include "common/tool_button.h"
#include "editor/annotations/styles.h"
#include "editor/commands/add_annotation.h"
#include "editor/document/document.h"
#include "main_window/capture_list.h"
#include "main_window/main_toolbar.h"
#include "main_window/uMainEditor.h"
#include "output/uSaver.h"
#include "settings/message_box.h"
#include "shots.h"
#include "support/scratch_folder.h"
#include "support/windows/forms.h"

namespace glimmer::shots {

namespace {

constexpr const char* samples[] = {"article-1280x1024.png", "shop-1920x1080.png", "table-1280x10000.png"};

void annotate(CaptureDocument& document, const char* style, const Rect& rect, const char* text, int number) {
    TShapeStyle chosen = *predefinedStyle(style);
    chosen.number.visible = number > 0;
    TBBShape shape(chosen, rect);
    shape.text.text = text;
    shape.number.number = number;
    shape.setLabelSize({190, 28});
    shape.layOut();
    document.run(std::make_unique<AddAnnotation>(shape));
}

void open(TMainEditor& editor, size_t index) {
    const size_t sample = index % std::size(samples);
    editor.openFile(std::string("samples/") + samples[sample]);
    CaptureDocument& document = *editor.session().current();
    if (index % 2 == 0) {
        annotate(document, "Red Frame", {60, 132, 690, 234}, "The heading is too long", 1);
        annotate(document, "Cold Glass", {60, 330, 465, 362}, "Please add the date", 2);
    } else {
        annotate(document, "Green Frame (big text)", {100, 160, 460, 300}, "New price", 0);
    }
}

/// What README and guide show (docs/pictures/main-window.png).
void guidePicture(TMainEditor& editor) {
    for (const char* sample : {samples[2], samples[1]}) editor.openFile(std::string("samples/") + sample);
    annotate(*editor.session().current(), "Green Frame (big text)", {100, 160, 460, 300}, "New price", 0);
    editor.openFile(std::string("samples/") + samples[0]);
    CaptureDocument& document = *editor.session().current();
    annotate(document, "Red Frame", {56, 128, 700, 236}, "The heading is too long", 1);
    annotate(document, "Green Frame (big text)", {350, 456, 462, 516}, "One bird less", 2);
    for (CaptureDocument* capture : editor.session().all()) capture->markSaved();
    document.selectAnnotation(document.annotations()[0].id());
}

/// Until every thumbnail has been made: what was changed rests first, then each takes a round of a timer.
void settle(TMainEditor& editor) {
    using std::chrono::milliseconds;
    const auto end = std::chrono::steady_clock::now() + milliseconds(900) + milliseconds(100) * editor.session().size();
    while (std::chrono::steady_clock::now() < end) {
        test::pump();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 30, QS_ALLINPUT);
    }
}

}  // namespace

void mainWindow(const std::string& prefix) {
    setMessageBoxes(nullptr);
    const test::ScratchFolder recovery("main shots");
    TSaver saver;
    auto* editor = new TMainEditor(saver, recovery.path());
    pMainEditor = editor;
    editor->SetPosition(wxPoint(0, 0));
    const wxSize usual = editor->GetSize();
    editor->showRoutine();
    const auto shot = [&](const char* name) {
        settle(*editor);
        shoot(*editor, prefix + name);
    };
    shot("empty");
    guidePicture(*editor);
    shot("guide");
    editor->session().discardAll();
    open(*editor, 0);
    shot("1");
    for (size_t i = 1; i < 6; ++i) open(*editor, i);
    auto* list = dynamic_cast<CaptureList*>(editor->FindWindow("lvAnnotations"));
    list->editName(5);
    shot("6-rename");
    list->SetFocus();
    list->setCurrent(0, true);
    list->select([](size_t place) { return place < 3; });
    shot("6");
    editor->SetSize(editor->FromDIP(wxSize(640, 560)));
    shot("narrow");
    editor->SetSize(usual);
    auto* toolbar = dynamic_cast<TMainToolbar*>(editor->FindWindow("tbMain"));
    toolbar->setButtonSize(ToolbarSize::Small);
    shot("small-buttons");
    toolbar->setButtonSize(ToolbarSize::Large);
    shot("large-buttons");
    toolbar->setButtonSize(ToolbarSize::Medium);
    toolbar->setFolded(true);
    shot("folded");
    toolbar->setPinned(true);
    for (size_t i = 6; i < 40; ++i) open(*editor, i);
    shot("40");
    editor->Close(true);
    test::pumpUntil([] { return pMainEditor == nullptr; });
}

}  // namespace glimmer::shots
