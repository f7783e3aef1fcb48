#pragma once

namespace glimmer {

/// Has settings files without a mark of their encoding read in the user's ANSI code page, as the system converts it.
void useSystemCodePage();

}  // namespace glimmer
