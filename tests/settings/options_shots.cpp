// Shows the options dialog, page by page, and writes a picture of each into the folder that is given. Not a test: for
// looking at.
//   options_shots FOLDER

#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/listbox.h>
#include <wx/msw/wrapwin.h>

#include "editor/cairo_text_painter.h"
#include "output/watermark.h"
#include "settings/options_dialog.h"

namespace {

void shoot(wxWindow& window, const wxString& path) {
    const wxSize size = window.GetSize();
    wxBitmap bitmap(size);
    wxMemoryDC memory(bitmap);
    const HDC screen = GetWindowDC(window.GetHWND());
    BitBlt(memory.GetHDC(), 0, 0, size.x, size.y, screen, 0, 0, SRCCOPY);
    ReleaseDC(window.GetHWND(), screen);
    memory.SelectObject(wxNullBitmap);
    bitmap.ConvertToImage().SaveFile(path, wxBITMAP_TYPE_PNG);
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 2) return 1;
    wxApp::SetInstance(new wxApp);
    int none = 0;
    if (!wxEntryStart(none, static_cast<wxChar**>(nullptr))) return 2;
    wxTheApp->CallOnInit();
    wxTheApp->SetExitOnFrameDelete(false);
    wxImage::AddHandler(new wxPNGHandler);
    wxGUIEventLoop loop;
    const wxEventLoopActivator activate(&loop);
    glimmer::OptionsServices services;
    services.program = "C:\\Glimmerpad\\glimmerpad.exe";
    glimmer::CairoTextPainter painter;
    services.watermarkPreview = [&painter](const glimmer::Options& options,
                                           glimmer::Size size) -> glimmer::Result<glimmer::TBitmap> {
        auto picture = glimmer::TBitmap::create(size.width, size.height, glimmer::PixelFormat::Bgr24);
        if (!picture) return picture;
        picture->fill(picture->bounds(), glimmer::rgb(200, 220, 240));
        glimmer::drawTextWatermark(*picture, glimmer::watermarkSettings(options), "Sample page - 2026-11-22", painter);
        return picture;
    };
    auto* dialog = new glimmer::TVistraneOptions(nullptr, services);
    dialog->Show();
    auto* pages = dynamic_cast<wxListBox*>(dialog->FindWindow("lstPages"));
    for (unsigned i = 0; i < pages->GetCount(); ++i) {
        const wxString page = pages->GetString(i);
        dialog->showPage(page.utf8_string());
        // Until the page has drawn itself.
        for (int round = 0; round < 20; ++round) {
            while (loop.Pending()) loop.Dispatch();
            loop.ProcessIdle();
            dialog->Update();
        }
        wxString name = page;
        name.Replace(" ", "-");
        shoot(*dialog, wxString(arguments[1]) + "/options-" + name.Lower() + ".png");
    }
    return 0;
}
