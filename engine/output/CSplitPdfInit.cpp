#include "engine/output/CSplitPdfInit.h"

#include <cleftor/cleftor.h>

#include <cstddef>

namespace folivex {

static_assert(CSplitPdfInit::ok == CLEFTOR_OK && CSplitPdfInit::cannotOpen == CLEFTOR_CANNOT_OPEN &&
              CSplitPdfInit::fileEncrypted == CLEFTOR_FILE_ENCRYPTED);
static_assert(sizeof(CSplitPdfInit::FailedRange) == sizeof(CleftorFailedRange) &&
              offsetof(CSplitPdfInit::FailedRange, reason) ==
                  offsetof(CleftorFailedRange, reason) &&
              offsetof(CSplitPdfInit::FailedRange, last) == offsetof(CleftorFailedRange, last));

CSplitPdfInit::CSplitPdfInit()
    : LoadedLibrary(QStringLiteral("CleftorU"), "CleftorInterfaceVersion",
                    CLEFTOR_INTERFACE_VERSION) {}

CSplitPdfInit::~CSplitPdfInit() {
  if (loaded) {
    SetWriteBehind(0); // its thread must not outlive the library
  }
}

} // namespace folivex
