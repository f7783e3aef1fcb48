#pragma once

#include "capture/capture_request.h"
#include "common/result.h"

namespace glimmer {

/// Carries a start with "-CAPTURE" out: in the instance that runs, or as the instance where there is none, which then
/// stays as long as the capture is open in the editor. What is wrong with the arguments goes to the standard error
/// output, since nobody may be there to answer a message box.
CaptureOutcome startCapture(const Result<CaptureRequest>& wanted);

}  // namespace glimmer
