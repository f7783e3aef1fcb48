#pragma once

#include <wx/menu.h>

#include <memory>

namespace glimmer {

class EditingForm;

/// The popup menu of annotations, `pmShapeMenu`, with the marks and disabled items of the moment. Its commands act on
/// the form's selected annotation, which must outlive the menu.
std::unique_ptr<wxMenu> makeShapeMenu(EditingForm& form);

}  // namespace glimmer
