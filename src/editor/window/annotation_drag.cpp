#include "editor/window/annotation_drag.h"

#include <wx/event.h>
#include <wx/window.h>

#include <utility>

#include "common/boundary.h"
#include "common/modal_scope.h"
#include "editor/annotations/annotation_clipboard.h"

namespace glimmer {

namespace {

const wxDataFormat& annotationFormat() {
    static const wxDataFormat format(annotationClipboardFormat);
    return format;
}

}  // namespace

AnnotationDropTarget::AnnotationDropTarget(wxWindow* canvas, Drop drop)
    : canvas_(canvas),
      drop_(std::move(drop)),
      annotations_(new wxCustomDataObject(annotationFormat())),
      files_(new wxFileDataObject) {
    auto* both = new wxDataObjectComposite;
    both->Add(annotations_, true);
    both->Add(files_);
    SetDataObject(both);
    SetDefaultAction(wxDragCopy);
}

wxDragResult AnnotationDropTarget::OnData(wxCoord x, wxCoord y, wxDragResult standard) {
    return guarded(wxDragNone, [&] { return take({x, y}, standard); });
}

wxDragResult AnnotationDropTarget::take(wxPoint at, wxDragResult standard) {
    if (!GetData()) return wxDragNone;
    const auto* both = static_cast<const wxDataObjectComposite*>(m_dataObject);
    if (both->GetReceivedFormat() == annotationFormat()) {
        const size_t size = annotations_->GetSize();
        if (size > maxClipboardBytes) return wxDragNone;
        std::vector<TBBShape> shapes = decodeAnnotations({static_cast<const uint8_t*>(annotations_->GetData()), size});
        return !shapes.empty() && drop_(std::move(shapes), at) ? wxDragCopy : wxDragNone;
    }
    const wxArrayString& names = files_->GetFilenames();
    auto* copies = new wxString[names.size()];  // the event's
    for (size_t i = 0; i < names.size(); ++i) copies[i] = names[i];
    wxDropFilesEvent event(wxEVT_DROP_FILES, static_cast<int>(names.size()), copies);
    wxWindow* window = wxGetTopLevelParent(canvas_);
    event.SetEventObject(window);
    return window->ProcessWindowEvent(event) ? standard : wxDragNone;
}

void dragAnnotation(wxWindow* canvas, const TBBShape& shape) {
    const std::vector<uint8_t> bytes = encodeAnnotations({shape});
    wxCustomDataObject data(annotationFormat());
    data.SetData(bytes.size(), bytes.data());
    wxDropSource source(data, canvas);
    const ModalScope waits;  // the canvas must outlive the drag
    source.DoDragDrop(wxDrag_CopyOnly);
}

}  // namespace glimmer
