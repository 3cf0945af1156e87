#include "engine/output/CSplitPdfInit.h"

#include <cleftor/cleftor.h>

namespace folivex {

static_assert(CSplitPdfInit::ok == CLEFTOR_OK && CSplitPdfInit::cannotOpen == CLEFTOR_CANNOT_OPEN &&
              CSplitPdfInit::fileEncrypted == CLEFTOR_FILE_ENCRYPTED);

CSplitPdfInit::CSplitPdfInit()
    : LoadedLibrary(QStringLiteral("CleftorU"), "CleftorInterfaceVersion",
                    CLEFTOR_INTERFACE_VERSION) {
  if (!loaded) {
    return;
  }
  bind(SplitPdf, "SplitPdf");
  bind(GetProcessingStatus, "GetProcessingStatus");
  bind(GetProcessingPage, "GetProcessingPage");
  bind(PdfTextDumpCloseFile, "PdfTextDumpCloseFile");
  bind(PdfTextDumpOpenFile, "PdfTextDumpOpenFile");
  bind(GetPageCount2, "GetPageCount2");
  bind(SplitPdfPages, "SplitPdfPages");
  bind(SetKeepBookmarks, "SetKeepBookmarks");
  bind(SetPageRotation, "SetPageRotation");
  bind(GetFileFacts, "GetFileFacts");
  bind(CleftorLastError, "CleftorLastError");
  bind(CleftorLastErrorText, "CleftorLastErrorText");
}

QString CSplitPdfInit::lastErrorText() const {
  const char16_t* text = CleftorLastErrorText();
  return text ? QString::fromUtf16(text) : QString();
}

} // namespace folivex
