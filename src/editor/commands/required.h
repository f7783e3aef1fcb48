#pragma once

#include "common/assertion.h"
#include "editor/document/content.h"

namespace glimmer {

/// The annotation of that id; a command that names one that is not there is a programming error.
inline const TBBShape& requiredAnnotation(const CaptureContent& content, AnnotationId id) {
    const TBBShape* shape = content.find(id);
    GLIMMER_ASSERT(shape != nullptr, "pShape != NULL", "uEditor");
    return *shape;
}

}  // namespace glimmer
