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
  ~CSplitPdfInit();
  CSplitPdfInit(const CSplitPdfInit&) = delete;
  CSplitPdfInit& operator=(const CSplitPdfInit&) = delete;

  // The library's results that the engine tells apart. Its header is not included here: it declares
  // operations of the same names as the text library's.
  static constexpr std::int32_t ok = 0;
  static constexpr std::int32_t cannotOpen = -4;
  static constexpr std::int32_t fileEncrypted = 1; ///< of GetFileFacts()

  /// A range that was handed over and could not be written. The texts are the library's own, until
  /// its next call. Laid out as CleftorFailedRange.
  struct FailedRange {
    const char16_t* target;
    const char16_t* reason;
    std::int32_t first;
    std::int32_t last;
  };

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

  Operation<int32_t(const char16_t*, const int32_t*, int32_t, int32_t)> SplitPdfRanges;
  Operation<void(const char16_t*, const char16_t*)> BeginOpenFile;
  Operation<void(int32_t)> SetKeepBookmarks;
  Operation<void(int32_t)> SetWriteBehind;
  Operation<int32_t(int32_t)> WaitForOpening;
  Operation<int32_t(int32_t, int32_t)> WaitForRoom;
  Operation<int32_t(int32_t)> DrainRanges;
  Operation<int32_t(FailedRange*)> TakeFailedRange;
  Operation<int32_t()> GetFileFacts;
  Operation<int32_t()> CleftorLastError;
  Operation<const char16_t*()> CleftorLastErrorText;

  QString lastErrorText() const;
};

} // namespace folivex
