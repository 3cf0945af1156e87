// CAppendPdfInit: the loaded append library.
#pragma once

#include "platform/LoadedLibrary.h"

#include <QString>

#include <cstdint>

namespace folivex {

/// The append library with its operations, bound by name in the order in which they stand here.
class CAppendPdfInit : public platform::LoadedLibrary {
public:
  CAppendPdfInit();

private:
  template <typename S> using Operation = platform::Operation<S>;

public:
  Operation<int32_t()> GetStatus;
  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*)> getAppendPDFToFile;
  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*)> getAppendPDFFile;

  Operation<const char16_t*()> MelderLastErrorText;

  QString lastErrorText() const;
};

} // namespace folivex
