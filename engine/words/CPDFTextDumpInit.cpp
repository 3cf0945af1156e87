#include "engine/words/CPDFTextDumpInit.h"

namespace folivex {

CPDFTextDumpInit::CPDFTextDumpInit()
    : LoadedLibrary(QStringLiteral("GlyphrunU"), "GlyphrunInterfaceVersion",
                    GLYPHRUN_INTERFACE_VERSION) {}

} // namespace folivex
