#include "engine/output/CAppendPdfInit.h"

#include <melder/melder.h>

namespace folivex {

CAppendPdfInit::CAppendPdfInit()
    : LoadedLibrary(QStringLiteral("MelderU"), "MelderInterfaceVersion", MELDER_INTERFACE_VERSION) {
  if (!loaded) {
    return;
  }
  bind(GetStatus, "GetStatus");
  bind(getAppendPDFToFile, "getAppendPDFToFile");
  bind(getAppendPDFFile, "getAppendPDFFile");
  bind(MelderLastErrorText, "MelderLastErrorText");
}

QString CAppendPdfInit::lastErrorText() const {
  const char16_t* text = MelderLastErrorText();
  return text ? QString::fromUtf16(text) : QString();
}

} // namespace folivex
