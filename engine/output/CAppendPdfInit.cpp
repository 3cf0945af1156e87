#include "engine/output/CAppendPdfInit.h"

#include <melder/melder.h>

#include <cstddef>

namespace folivex {

static_assert(sizeof(WrittenFile) == sizeof(MelderWrittenFile) &&
              offsetof(WrittenFile, sha256) == offsetof(MelderWrittenFile, sha256));

CAppendPdfInit::CAppendPdfInit()
    : LoadedLibrary(QStringLiteral("MelderU"), "MelderInterfaceVersion", MELDER_INTERFACE_VERSION) {
}

} // namespace folivex
