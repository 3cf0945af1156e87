// Joining: a part at the end of the receiving document.
#pragma once

#include "Document.h"
#include "Transplant.h"

namespace melder {

/// Adds the pages of the part to the end of the receiving document, in memory, with what leads to
/// them and what is said about them: named destinations, bookmarks, labels, fields, layers. Throws
/// common::Failure when objects of a damaged part are missing.
void join(Document& receiver, Document& part, Transplant& transplant);

} // namespace melder
