// Layers: the optional content of a part becomes that of the receiving file.
#pragma once

#include "Document.h"
#include "Transplant.h"

namespace melder {

/// Gives each layer of the part its place in the receiving file. One that equals a layer there
/// (name, use, shown or not) becomes that one: the layers of parts cut from one source are switched
/// together, and the lists do not grow with every append. Has to come before pages are copied.
void joinLayers(Document& receiver, Document& part, Transplant& transplant);

} // namespace melder
