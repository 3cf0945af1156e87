// CPDFTextDumpInit: the loaded text library.
#pragma once

#include "platform/LoadedLibrary.h"

#include <glyphrun/glyphrun.h>

#include <QString>

#include <functional>
#include <memory>
#include <utility>

namespace folivex {

/// The text library with its operations, bound by name in the order in which they stand here. One
/// state for the whole process lies behind them (see glyphrun.h).
class CPDFTextDumpInit : public platform::LoadedLibrary {
public:
  CPDFTextDumpInit();

  Operation<void(const char16_t*, const char16_t*, int32_t, int32_t)> PdfTextDumpFile{
      m_library, "PdfTextDumpFile"};
  Operation<int32_t(const char16_t*, const char16_t*)> GetPageCount{m_library, "GetPageCount"};
  Operation<int32_t()> getNumWords{m_library, "getNumWords"};
  Operation<void(int32_t)> wordToGet{m_library, "wordToGet"};
  Operation<int32_t()> getWordX{m_library, "getWordX"};
  Operation<int32_t()> getWordY{m_library, "getWordY"};
  Operation<const char16_t*()> getWordStr{m_library, "getWordStr"};
  Operation<const char16_t*()> getFont{m_library, "getFont"};
  Operation<int32_t()> getFontSize{m_library, "getFontSize"};
  Operation<void()> DoSort{m_library, "DoSort"};
  Operation<void()> DoReverseSort{m_library, "DoReverseSort"};
  Operation<void()> RemoveDupes{m_library, "RemoveDupes"};
  Operation<void()> PdfTextDumpCloseFile{m_library, "PdfTextDumpCloseFile"};
  Operation<void(const char16_t*, const char16_t*)> PdfTextDumpOpenFile{m_library,
                                                                        "PdfTextDumpOpenFile"};
  Operation<void(int32_t, int32_t)> PdfTextDumpFilePages{m_library, "PdfTextDumpFilePages"};
  Operation<int32_t()> GetPageCount2{m_library, "GetPageCount2"};
  Operation<int32_t()> GetProcessingStatus{m_library, "GetProcessingStatus"};
  Operation<int32_t()> GetProcessingPage{m_library, "GetProcessingPage"};

  // Beyond the operations that every text library of the family has.
  Operation<void(double)> SetWordSpacing{m_library, "SetWordSpacing"};
  Operation<void(int32_t)> SetReadAhead{m_library, "SetReadAhead"};
  Operation<int32_t()> GetPageState{m_library, "GetPageState"};
  Operation<int32_t()> GetFileFacts{m_library, "GetFileFacts"};
  Operation<int32_t(const char16_t*, const char16_t*, const char16_t*)> RepairFile{m_library,
                                                                                   "RepairFile"};
  Operation<const char16_t*()> GlyphrunLastErrorText{m_library, "GlyphrunLastErrorText"};
  Operation<int32_t()> GetOutlineCount{m_library, "GetOutlineCount"};
  Operation<int32_t(int32_t, GlyphrunOutlineEntry*)> GetOutlineEntry{m_library, "GetOutlineEntry"};
  Operation<GlyphrunView*(const char16_t*, const char16_t*, int32_t*)> OpenView{m_library,
                                                                                "OpenView"};
  Operation<void(GlyphrunView*)> CloseView{m_library, "CloseView"};
  Operation<void(GlyphrunView*)> AbortView{m_library, "AbortView"};
  Operation<int32_t(const GlyphrunView*)> GetViewPageCount{m_library, "GetViewPageCount"};
  Operation<int32_t(GlyphrunView*, int32_t, double*, double*)> GetViewPageSize{m_library,
                                                                               "GetViewPageSize"};
  Operation<int32_t(GlyphrunView*, int32_t, double, GlyphrunImage*)> RenderViewPage{
      m_library, "RenderViewPage"};
  Operation<void(GlyphrunImage*)> ReleaseImage{m_library, "ReleaseImage"};
  Operation<void(GlyphrunView*, double)> SetViewWordSpacing{m_library, "SetViewWordSpacing"};
  Operation<void(GlyphrunView*, int32_t)> SetViewReadAhead{m_library, "SetViewReadAhead"};
  Operation<int32_t(GlyphrunView*, int32_t, const GlyphrunWord**)> GetViewWords{m_library,
                                                                                "GetViewWords"};
  Operation<int32_t(const GlyphrunView*)> GetViewPageState{m_library, "GetViewPageState"};
  Operation<int32_t(GlyphrunView*)> GetViewOutlineCount{m_library, "GetViewOutlineCount"};
  Operation<int32_t(GlyphrunView*, int32_t, GlyphrunOutlineEntry*)> GetViewOutlineEntry{
      m_library, "GetViewOutlineEntry"};

  /// The path of a file that is read in the place of another one, and stays as long as what is
  /// returned; null when there is none. For any thread.
  using StandIn =
      std::function<std::shared_ptr<const QString>(const QString& path, const QString& password)>;
  /// Set before other threads use the library.
  void setStandIn(StandIn standIn) { m_standIn = std::move(standIn); }
  std::shared_ptr<const QString> standInFor(const QString& path, const QString& password) const {
    return m_standIn ? m_standIn(path, password) : nullptr;
  }

  /// OpenView, of the stand-in where the file itself cannot be read. `result` tells of the file.
  GlyphrunView* openView(const QString& path, const QString& password,
                         int32_t* result = nullptr) const;

  /// Threads to read ahead with. Each holds the file's page tree once more, so that many of them
  /// cost more than they bring.
  static int threadsAhead();

  /// Text of the last failure.
  QString lastErrorText() const { return QString::fromUtf16(GlyphrunLastErrorText()); }

private:
  StandIn m_standIn;
};

} // namespace folivex
