#include "engine/output/CAppendPdfInit.h"

#include <melder/melder.h>

namespace folivex {

CAppendPdfInit::CAppendPdfInit()
    : LoadedLibrary(QStringLiteral("MelderU"), "MelderInterfaceVersion", MELDER_INTERFACE_VERSION) {
}

} // namespace folivex
