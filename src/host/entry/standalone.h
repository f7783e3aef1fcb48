#pragma once

namespace glimmer {

/// The standalone program with the process's command line, from start to end; see readArguments().
void runStandalone();

}  // namespace glimmer
