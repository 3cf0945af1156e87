// CSplitPdfInit: the loaded split library.
#pragma once

#include "engine/output/WrittenFile.h"
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
  static constexpr std::int32_t taken = -9;
  static constexpr std::int32_t sourceChanged = -10;
  static constexpr std::int32_t fileEncrypted = 1; ///< of GetFileFacts()

  /// A range that was handed over, and its fate. The texts are the library's own, until its next
  /// call. Laid out as CleftorFinishedRange.
  struct FinishedRange {
    const char16_t* target;
    const char16_t* reason;
    std::int32_t code;
    std::int32_t first;
    std::int32_t last;
    WrittenFile file;
  };

  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*, int32_t, int32_t)> SplitPdf{
      m_library, "SplitPdf"};
  Operation<int32_t()> GetProcessingStatus{m_library, "GetProcessingStatus"};
  Operation<int32_t()> GetProcessingPage{m_library, "GetProcessingPage"};
  Operation<void()> PdfTextDumpCloseFile{m_library, "PdfTextDumpCloseFile"};
  Operation<int32_t(const char16_t*, const char16_t*)> PdfTextDumpOpenFile{m_library,
                                                                           "PdfTextDumpOpenFile"};
  Operation<int32_t()> GetPageCount2{m_library, "GetPageCount2"};
  Operation<int32_t(const char16_t*, int32_t, int32_t, int32_t)> SplitPdfPages{m_library,
                                                                               "SplitPdfPages"};

  Operation<int32_t(const char16_t*, const int32_t*, int32_t, int32_t)> SplitPdfRanges{
      m_library, "SplitPdfRanges"};
  Operation<void(const char16_t*, const char16_t*)> BeginOpenFile{m_library, "BeginOpenFile"};
  Operation<void(int32_t)> SetKeepBookmarks{m_library, "SetKeepBookmarks"};
  Operation<void(int32_t)> SetWriteBehind{m_library, "SetWriteBehind"};
  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*)> RepairFile{m_library,
                                                                                   "RepairFile"};
  Operation<int32_t(int32_t)> WaitForOpening{m_library, "WaitForOpening"};
  Operation<int32_t(int32_t, int32_t)> WaitForRoom{m_library, "WaitForRoom"};
  Operation<int32_t(int32_t)> DrainRanges{m_library, "DrainRanges"};
  Operation<int32_t(FinishedRange*)> TakeFinishedRange{m_library, "TakeFinishedRange"};
  Operation<int32_t(const char16_t*)> ReserveTarget{m_library, "ReserveTarget"};
  Operation<void(const char16_t*)> ReleaseTarget{m_library, "ReleaseTarget"};
  Operation<void(int32_t)> SetDigests{m_library, "SetDigests"};
  Operation<int32_t()> GetFileFacts{m_library, "GetFileFacts"};
  Operation<const char16_t*()> CleftorLastErrorText{m_library, "CleftorLastErrorText"};

  /// Text of the last failure.
  QString lastErrorText() const { return QString::fromUtf16(CleftorLastErrorText()); }
};

} // namespace folivex
