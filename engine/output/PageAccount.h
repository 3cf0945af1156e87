// PageAccount: where every page of a source went.
#pragma once

#include "engine/base/Text.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace folivex {

/// Keeps, for each page of the source, whether it stands in an output, so that at the end of a run
/// no page is missing without a word. Page numbers count from 1, ranges are inclusive; parts of a
/// range outside the source are ignored.
class PageAccount {
public:
  void start(int pageCount);
  /// Another source's pages come behind these: counts are those of all, page numbers nobody's.
  void add(const PageAccount& more);

  void written(int first, int last);     ///< stands in an output
  void overwritten(int first, int last); ///< an output that it was written to is another one now
  void withdrawn(int first, int last);   ///< an output that it was written to is taken away again
  void replaced(int first, int last);    ///< its output gave way to a later one of the same name
  void handedOn(int first, int last); ///< a command has them, and left no file where it was told to
  void failed(int first, int last);   ///< its output could not be written
  void elsewhere(int first, int last); ///< its output is another run's
  void stopped(int first, int last);   ///< the run ended before its output was written

  /// Of a page that stands in no output the gravest fate is told. One that stands in any output is
  /// accounted for.
  enum class Fate : std::uint8_t {
    InNone,
    Elsewhere,
    HandedOn,
    Stopped,
    Replaced,
    Failed,
    Written
  };
  int count(Fate fate) const;
  std::vector<IntRange> runsOf(Fate fate) const;
  QString pagesOf(Fate fate) const; ///< "1-3, 40"

  int pageCount() const { return static_cast<int>(m_pages.size()); }
  int inOutputs() const { return count(Fate::Written); }
  int leftOver() const { return count(Fate::InNone); } ///< in no range
  QString leftOverPages() const { return pagesOf(Fate::InNone); }
  int failedPages() const { return count(Fate::Failed); }
  int stoppedPages() const { return count(Fate::Stopped); }

  /// One line for a person: "40 pages: 38 in 12 files, 2 in no range (1, 40)."
  QString summary(int fileCount) const;

private:
  struct Page {
    Fate fate = Fate::InNone;  ///< when no output holds it
    std::uint32_t holders = 0; ///< outputs that it stands in
    Fate told() const { return holders > 0 ? Fate::Written : fate; }
  };

  std::vector<int> numbersOf(Fate fate) const;
  template <typename Change> void change(int first, int last, Change change);
  void leave(int first, int last, Fate fate);
  void raise(int first, int last, Fate fate);

  std::vector<Page> m_pages;
};

} // namespace folivex
