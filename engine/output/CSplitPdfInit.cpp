#include "engine/output/CSplitPdfInit.h"

#include <cleftor/cleftor.h>

#include <cstddef>

namespace folivex {

static_assert(CSplitPdfInit::ok == CLEFTOR_OK && CSplitPdfInit::cannotOpen == CLEFTOR_CANNOT_OPEN &&
              CSplitPdfInit::taken == CLEFTOR_TAKEN &&
              CSplitPdfInit::sourceChanged == CLEFTOR_SOURCE_CHANGED &&
              CSplitPdfInit::fileEncrypted == CLEFTOR_FILE_ENCRYPTED);
static_assert(sizeof(CSplitPdfInit::FinishedRange) == sizeof(CleftorFinishedRange) &&
              offsetof(CSplitPdfInit::FinishedRange, last) ==
                  offsetof(CleftorFinishedRange, last) &&
              offsetof(CSplitPdfInit::FinishedRange, file) ==
                  offsetof(CleftorFinishedRange, file) &&
              offsetof(WrittenFile, sha256) == offsetof(CleftorWrittenFile, sha256));

CSplitPdfInit::CSplitPdfInit()
    : LoadedLibrary(QStringLiteral("CleftorU"), "CleftorInterfaceVersion",
                    CLEFTOR_INTERFACE_VERSION) {}

CSplitPdfInit::~CSplitPdfInit() {
  if (loaded) {
    SetWriteBehind(0); // its thread must not outlive the library
  }
}

} // namespace folivex
