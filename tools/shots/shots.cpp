// Shows windows and writes pictures of them: shots GROUP FOLDER [SUFFIX], the group "all" for each of them. ./dev shot
// runs it.

#include "shots.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/msw/wrapwin.h>

#include <cstdio>
#include <cstring>

#include "capture/screen_area.h"
#include "common/files.h"
#include "common/section_memory.h"
#include "imaging/png_codec.h"
#include "settings/settings_path.h"
#include "support/windows/forms.h"
#include "support/windows/test_account.h"

namespace glimmer::shots {

namespace {

Result<TBitmap> still(wxWindow& window, const Rect& area) {
    // Painted, and painted again by whatever the first painting caused.
    for (int round = 0; round < 5; ++round) {
        test::pump();
        window.Update();
        GdiFlush();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    }
    return grabScreen(area);
}

}  // namespace

void shootAround(wxWindow& window, const std::string& path, int margin) {
    const wxRect place = window.GetScreenRect().Inflate(margin);
    const Rect screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    const Rect area = Rect{place.x, place.y, place.x + place.width, place.y + place.height}.intersected(screen);
    const Result<TBitmap> picture = still(window, area);
    const auto file = picture ? encodePng(*picture) : Result<std::vector<uint8_t>>(picture.failure());
    if (!file || !writeFile(pathFromUtf8(path + ".png"), *file)) std::fprintf(stderr, "no %s\n", path.c_str());
}

void shoot(wxWindow& window, const std::string& path) { shootAround(window, path, 0); }

}  // namespace glimmer::shots

int main(int count, char** arguments) {
    using namespace glimmer;
    const struct {
        const char* name;
        void (*take)(const std::string&);
    } groups[] = {{"canvas", shots::canvas},
                  {"dialogs", shots::dialogs},
                  {"main", shots::mainWindow},
                  {"options", shots::options},
                  {"recovery", shots::recovery}};
    if (count < 3) return 1;
    test::useOwnFolders();
    SetProcessDPIAware();
    wxApp::SetInstance(new wxApp);
    int none = 0;
    if (!wxEntryStart(none, static_cast<wxChar**>(nullptr)) || !wxTheApp->CallOnInit()) return 2;
    wxTheApp->SetExitOnFrameDelete(false);
    delete wxLog::SetActiveTarget(new wxLogStderr);
    setPixelAllocator(sectionPixelMemory);
    wxGUIEventLoop loop;
    const wxEventLoopActivator activate(&loop);
    for (const auto& group : groups)
        if (std::strcmp(arguments[1], group.name) == 0 || std::strcmp(arguments[1], "all") == 0)
            group.take(std::string(arguments[2]) + "/" + group.name + (count > 3 ? arguments[3] : "") + "-");
    test::pump();
    return 0;
}
