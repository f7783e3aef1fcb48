#pragma once

#include <string>
#include <string_view>

namespace glimmer {

// A compressed text chunk holds Latin-1 by the format's own rules. Notes may be in any language, so a text that
// Latin-1 cannot hold is written as UTF-8, as other programs do; a reader tells the two apart since Latin-1 text is
// all but never well-formed UTF-8. A Latin-1 text that would be mistaken is written as UTF-8 too, which makes the
// way there and back exact for every text.

/// Bytes of a text chunk for a UTF-8 text. A NUL, which the format forbids, ends the text.
std::string toPngText(std::string_view utf8);
/// The text as UTF-8.
std::string fromPngText(std::string_view bytes);

}  // namespace glimmer
