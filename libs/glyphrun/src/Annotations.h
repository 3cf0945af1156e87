// Annotations and form fields of a page, as far as a reader sees them.
#pragma once

#include "ContentReader.h"
#include "PdfFile.h"

#include <vector>

namespace glyphrun {

/// The form XObject that an annotation shows, and where it stands on the page.
struct Appearance {
  PdfObject form;
  Matrix matrix; ///< applied after the form's own matrix; gives the page's own coordinates
};

/// Appearances of a page's visible annotations, in the order in which they are drawn.
std::vector<Appearance> visibleAppearances(PdfFile& file, std::int32_t index,
                                           LayerVisibility& layers);

} // namespace glyphrun
