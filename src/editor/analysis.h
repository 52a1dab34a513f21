#pragma once

#include "dvd/analysis_cache.h"
#include "editor/document.h"

namespace quillomar {

// What a fast open of the document's file set needs: absolute paths, and the LBAs from which a fast
// scan finds the same subpictures, times and buttons. Without LBAs when there are no subpictures.
[[nodiscard]] AnalysisCache AnalysisOf(const Document& document);

}  // namespace quillomar
