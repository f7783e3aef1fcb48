#pragma once

#include "editor/annotations/shapes_list.h"

/// Lays annotations out and paints them as the canvas does, around the origin and around each of them, and checks that
/// nothing is painted outside of what they say they take. At most the first four: a fuzzer's time is better spent on
/// the next input.
void paintForFuzzer(const glimmer::TShapesList& shapes);
