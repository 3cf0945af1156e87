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
  bind(SplitPdfRanges, "SplitPdfRanges");
  bind(BeginOpenFile, "BeginOpenFile");
  bind(SetKeepBookmarks, "SetKeepBookmarks");
  bind(SetWriteBehind, "SetWriteBehind");
  bind(WaitForOpening, "WaitForOpening");
  bind(WaitForRoom, "WaitForRoom");
  bind(DrainRanges, "DrainRanges");
  bind(TakeFailedRange, "TakeFailedRange");
  bind(GetFileFacts, "GetFileFacts");
  bind(CleftorLastError, "CleftorLastError");
  bind(CleftorLastErrorText, "CleftorLastErrorText");
}

CSplitPdfInit::~CSplitPdfInit() {
  if (loaded) {
    SetWriteBehind(0); // its thread must not outlive the library
  }
}

QString CSplitPdfInit::lastErrorText() const {
  const char16_t* text = CleftorLastErrorText();
  return text ? QString::fromUtf16(text) : QString();
}

} // namespace folivex
