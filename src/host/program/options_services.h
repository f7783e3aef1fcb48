#pragma once

#include "settings/dialog/options_dialog.h"

namespace glimmer {

class HotKeys;

/// What the options dialog needs of the rest of the program. `hotKeys` outlives the dialog; null where there are none.
OptionsServices optionsServices(const HotKeys* hotKeys);

}  // namespace glimmer
