// ViewWordLookup: words by position, beside the page loop.
#pragma once

#include "engine/words/PageWordLookup.h"

#include <functional>

struct GlyphrunView;

namespace folivex {

class CPDFTextDumpInit;

/// Looks words up in a view of its own, since the text library's page-by-page state belongs to the
/// page loop. The view is opened with the first look-up and closed on destruction; the words of the
/// page looked at last are kept by it.
///
/// Of several words in the ranges the first in reading order wins; words are not joined.
class ViewWordLookup : public PageWordLookup {
public:
  /// What to look at, and how words and positions are meant there.
  struct Source {
    QString file;
    QString password;
    bool rotated = false;
    double wordSpacing = 0;
  };

  /// `tell` gets what hinders a look-up, once a file.
  ViewWordLookup(CPDFTextDumpInit& library, Source source,
                 std::function<void(const QString&)> tell);
  ViewWordLookup(const ViewWordLookup&) = delete;
  ViewWordLookup& operator=(const ViewWordLookup&) = delete;
  ~ViewWordLookup() override;

  QString wordAt(int pageIndex, IntRange h, IntRange v) override;

private:
  void tellOnce(const QString& text);

  CPDFTextDumpInit& m_library;
  Source m_source;
  std::function<void(const QString&)> m_tell;
  GlyphrunView* m_view = nullptr;
  bool m_opened = false;
  bool m_told = false;
};

} // namespace folivex
