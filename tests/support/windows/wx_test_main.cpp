// The main function of every test of forms: the toolkit runs while the tests run, with an event loop that counts as
// active, so that dialogs, timers and idle work behave as in the program.

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>
#include <exception>

#include "support/windows/test_account.h"

namespace {

class TestApp : public wxApp {
public:
    bool OnInit() override {
        SetExitOnFrameDelete(false);
        return true;
    }
    // An exception in an event handler is a failed test, not the end of all others.
    bool OnExceptionInMainLoop() override {
        OnUnhandledException();
        return true;
    }
    void OnUnhandledException() override {
        try {
            throw;
        } catch (const std::exception& failure) {
            ADD_FAILURE() << "an event handler threw: " << failure.what();
        } catch (...) {
            ADD_FAILURE() << "an event handler threw";
        }
    }
};

}  // namespace

int main(int argc, char** argv) {
    glimmer::test::useOwnFolders();
    testing::InitGoogleTest(&argc, argv);
    wxApp::SetInstance(new TestApp);  // owned by the toolkit
    int noArguments = 0;
    if (!wxEntryStart(noArguments, static_cast<wxChar**>(nullptr)) || !wxTheApp->CallOnInit()) {
        std::fprintf(stderr, "The toolkit does not start.\n");
        return 2;
    }
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the toolkit deletes the program's object
    delete wxLog::SetActiveTarget(new wxLogStderr);
    int result = 0;
    {
        wxGUIEventLoop loop;
        const wxEventLoopActivator activate(&loop);
        result = RUN_ALL_TESTS();
        wxTheApp->ProcessPendingEvents();
        loop.ProcessIdle();  // destroys windows that were closed
    }
    wxTheApp->OnExit();
    wxEntryCleanup();
    return result;
}
