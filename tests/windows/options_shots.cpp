// The options dialog, page by page.

#include <wx/listbox.h>

#include "editor/cairo_text_painter.h"
#include "output/watermark.h"
#include "settings/options_dialog.h"
#include "windows/shots.h"

namespace glimmer::shots {

void options(const std::string& prefix) {
    OptionsServices services;
    services.program = "C:\\Glimmerpad\\glimmerpad.exe";
    CairoTextPainter painter;
    services.watermarkPreview = [&painter](const Options& options, Size size) -> Result<TBitmap> {
        auto picture = TBitmap::create(size.width, size.height, PixelFormat::Bgr24);
        if (!picture) return picture;
        picture->fill(picture->bounds(), rgb(200, 220, 240));
        drawTextWatermark(*picture, watermarkSettings(options), "Sample page - 2026-11-22", painter);
        return picture;
    };
    auto* dialog = new TVistraneOptions(nullptr, services);
    dialog->Show();
    auto* pages = dynamic_cast<wxListBox*>(dialog->FindWindow("lstPages"));
    for (unsigned i = 0; i < pages->GetCount(); ++i) {
        wxString page = pages->GetString(i);
        dialog->showPage(page.utf8_string());
        page.Replace(" ", "-");
        shoot(*dialog, prefix + page.Lower().utf8_string());
    }
    dialog->Destroy();
}

}  // namespace glimmer::shots
