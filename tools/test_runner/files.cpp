#include "runner.h"
// The toolkit after <windows.h>, whose names it then leaves alone.
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/image.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

namespace glimmer::runner {

namespace {

namespace fs = std::filesystem;

bool isLeftOut(const fs::path& path) { return path.filename() == "temp" || path.filename() == "user"; }

}  // namespace

void unblock(const fs::path& folder) {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder, ignored))
        if (entry.is_regular_file(ignored)) DeleteFileW((entry.path().wstring() + L":Zone.Identifier").c_str());
}

bool zipFolder(const fs::path& folder, const fs::path& file) {
    wxFFileOutputStream out(file.wstring(), "wb");
    wxZipOutputStream zip(out);
    std::error_code error;
    for (auto at = fs::recursive_directory_iterator(folder, error); at != fs::recursive_directory_iterator(); ++at) {
        if (at->is_directory() && isLeftOut(at->path())) {
            at.disable_recursion_pending();
            continue;
        }
        if (!at->is_regular_file()) continue;
        wxFFileInputStream in(at->path().wstring(), "rb");
        const std::wstring name = L"results/" + fs::relative(at->path(), folder).generic_wstring();
        if (!in.IsOk() || !zip.PutNextEntry(wxString(name)) || !zip.Write(in).IsOk()) return false;
    }
    return !error && zip.Close() && out.Close();
}

bool photographScreen(const fs::path& file) {
    wxScreenDC screen;
    const wxSize size = screen.GetSize();
    wxBitmap bitmap(size);
    wxMemoryDC memory(bitmap);
    memory.Blit(wxPoint(), size, &screen, wxPoint());
    memory.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage().SaveFile(file.wstring(), wxBITMAP_TYPE_PNG);
}

}  // namespace glimmer::runner
