#include "engine/words/CPDFTextDumpInit.h"

#include "engine/base/Utf16.h"

#include <QThread>

#include <algorithm>

namespace folivex {

CPDFTextDumpInit::CPDFTextDumpInit()
    : LoadedLibrary(QStringLiteral("GlyphrunU"), "GlyphrunInterfaceVersion",
                    GLYPHRUN_INTERFACE_VERSION) {}

GlyphrunView* CPDFTextDumpInit::openView(const QString& path, const QString& password,
                                         int32_t* result) const {
  int32_t code = GLYPHRUN_OK;
  GlyphrunView* view = OpenView(utf16(path), utf16(password), &code);
  if (code == GLYPHRUN_NOT_A_PDF || code == GLYPHRUN_WRONG_PASSWORD) {
    if (const auto other = standInFor(path, password)) {
      view = OpenView(utf16(*other), u"", nullptr);
      code = view != nullptr ? GLYPHRUN_OK : code;
    }
  }
  if (result != nullptr) {
    *result = code;
  }
  return view;
}

int CPDFTextDumpInit::threadsAhead() {
  constexpr int most = 4;
  return std::clamp(QThread::idealThreadCount(), 1, most);
}

} // namespace folivex
