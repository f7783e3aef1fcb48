// What is offered after a crash: the box of the standalone program, the bar in the main window of a host.

#include <wx/dialog.h>

#include "common/files.h"
#include "editor/commands/set_info.h"
#include "editor/recovery/recovery_keeper.h"
#include "imaging/picture_file.h"
#include "main_window/uMainEditor.h"
#include "output/uSaver.h"
#include "settings/message_box.h"
#include "shots.h"
#include "support/scratch_folder.h"
#include "support/windows/forms.h"

namespace glimmer::shots {

namespace {

std::unique_ptr<CaptureDocument> sample(const std::string& file, const std::string& name) {
    TBitmap page = readPicture(readFile("samples/" + file, uint64_t{1} << 28U).take()).take();
    return CaptureDocument::create(std::move(page), {"http://a.b/", name, name, "", 0}).take();
}

void leaveBehind(const std::filesystem::path& folder) {
    RecoveryKeeper keeper(folder);
    for (const auto& [file, name] :
         {std::pair<const char*, const char*>{"article-1280x1024.png", "The Northern Review"},
          {"shop-1920x1080.png", "Lamps and lanterns"}}) {
        const std::unique_ptr<CaptureDocument> capture = sample(file, name);
        keeper.add(*capture);
        static_cast<void>(capture->run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "worked on")));
        keeper.leave(*capture);
    }
}

}  // namespace

void recovery(const std::string& prefix) {
    setMessageBoxes(&systemMessageBoxes());
    const test::ScratchFolder folder("recovery shots");
    leaveBehind(folder.path());
    TSaver saver;
    for (const bool inBar : {false, true}) {
        auto* window = new TMainEditor(saver, folder.path());
        pMainEditor = window;
        window->session().add(sample("article-1280x1024.png", "Article")).markSaved();
        window->showRoutine();
        if (inBar) {
            window->offerRecovered(true);
            shoot(*window, prefix + "bar");
        } else {
            const test::NextModal box([&](wxDialog& dialog) {
                shoot(*window, prefix + "box");
                dialog.EndModal(wxID_CANCEL);
            });
            window->offerRecovered(false);
        }
        window->Close(true);
        test::pumpUntil([] { return pMainEditor == nullptr; });
    }
}

}  // namespace glimmer::shots
