// CSplitPdfInit: the loaded split library.
#pragma once

#include "platform/LoadedLibrary.h"

#include <QString>

#include <cstdint>

namespace folivex {

/// The split library with its operations, bound by name in the order in which they stand here. One
/// state for the whole process lies behind them (see cleftor.h).
class CSplitPdfInit : public platform::LoadedLibrary {
public:
  CSplitPdfInit();

  // The library's results that the engine tells apart. Its header is not included here: it declares
  // operations of the same names as the text library's.
  static constexpr std::int32_t ok = 0;
  static constexpr std::int32_t cannotOpen = -4;
  static constexpr std::int32_t fileEncrypted = 1; ///< of GetFileFacts()

private:
  template <typename S> using Operation = platform::Operation<S>;

public:
  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*, int32_t, int32_t)> SplitPdf;
  Operation<int32_t()> GetProcessingStatus;
  Operation<int32_t()> GetProcessingPage;
  Operation<void()> PdfTextDumpCloseFile;
  Operation<int32_t(const char16_t*, const char16_t*)> PdfTextDumpOpenFile;
  Operation<int32_t()> GetPageCount2;
  Operation<int32_t(const char16_t*, int32_t, int32_t, int32_t)> SplitPdfPages;

  Operation<void(int32_t)> SetKeepBookmarks;
  Operation<void(int32_t)> SetPageRotation;
  Operation<int32_t()> GetFileFacts;
  Operation<int32_t()> CleftorLastError;
  Operation<const char16_t*()> CleftorLastErrorText;

  QString lastErrorText() const;
};

} // namespace folivex
