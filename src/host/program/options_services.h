#pragma once

#include "settings/dialog/options_dialog.h"

namespace glimmer {

/// What the options dialog needs of the rest of the program.
OptionsServices optionsServices();

}  // namespace glimmer
