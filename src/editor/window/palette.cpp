#include "editor/window/palette.h"

#include <algorithm>

namespace glimmer {

void rememberColour(std::vector<Colour>& last, Colour used) {
    std::erase(last, used);
    last.insert(last.begin(), used);
    if (last.size() > lastColoursKept) last.resize(lastColoursKept);
}

}  // namespace glimmer
