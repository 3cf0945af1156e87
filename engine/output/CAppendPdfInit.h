// CAppendPdfInit: the loaded append library.
#pragma once

#include "engine/output/WrittenFile.h"
#include "platform/LoadedLibrary.h"

#include <QString>

#include <cstdint>

namespace folivex {

/// The append library with its operations, bound by name in the order in which they stand here.
class CAppendPdfInit : public platform::LoadedLibrary {
public:
  CAppendPdfInit();

  Operation<int32_t()> GetStatus{m_library, "GetStatus"};
  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*)> getAppendPDFToFile{
      m_library, "getAppendPDFToFile"};
  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*)> getAppendPDFFile{
      m_library, "getAppendPDFFile"};

  Operation<void(int32_t)> SetDigests{m_library, "SetDigests"};
  Operation<void(WrittenFile*)> GetWrittenFile{m_library, "GetWrittenFile"};
  Operation<const char16_t*()> MelderLastErrorText{m_library, "MelderLastErrorText"};

  /// Text of the last failure.
  QString lastErrorText() const { return QString::fromUtf16(MelderLastErrorText()); }
};

} // namespace folivex
