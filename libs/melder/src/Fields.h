// Fields: the form of a part joins that of the receiving file.
#pragma once

#include "Document.h"
#include "Transplant.h"

namespace melder {

/// A field of the part keeps its name while it is free; else it gets a number ("Total+1") and stays
/// a field of its own. Fields take over what only the part's form says about them, fonts for
/// editing move into the receiving form; a signature vouches for bytes that are no longer these and
/// goes. Has to come before pages are copied: it changes fields of the part.
void joinFields(Document& receiver, Document& part, Transplant& transplant);

} // namespace melder
