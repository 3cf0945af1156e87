// TableFiller: reads the words of a file into a table, on threads of its own.
#pragma once

#include "engine/words/WordTable.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

struct GlyphrunView;

namespace folivex {

class CPDFTextDumpInit;

/// Each thread reads through a view of its own, so that the text library's page-by-page state stays
/// another's. Pages come into the table nearly in order.
class TableFiller {
public:
  /// What is read. The words are those of one state of the file only as long as it does not change:
  /// that is the caller's to look at.
  struct Source {
    QString file;
    QString password;
    double wordSpacing = 0;
    bool operator==(const Source&) const = default;
  };

  /// Begins at once, unless it is paused. `library` must outlive this.
  TableFiller(CPDFTextDumpInit& library, Source source, std::shared_ptr<WordTable> table,
              bool isPaused);
  TableFiller(const TableFiller&) = delete;
  TableFiller& operator=(const TableFiller&) = delete;
  /// Gives up what is not read, and waits for the threads: as long as a file takes to open at most.
  ~TableFiller();

  // For any thread; none of them waits.
  void giveUp();
  /// Reading stands still at the next page.
  void setPaused(bool on);
  /// Whether no thread is at work any more.
  bool isFinished() const { return m_threadCount == 0; }

private:
  class View;

  void readFile();
  void readPages(View& view);
  bool readPage(View& view, int page, std::vector<PageWord>& words);
  bool waitWhilePaused();
  void begin(void (TableFiller::*work)());
  void help();

  CPDFTextDumpInit& m_library;
  Source m_source;
  std::shared_ptr<WordTable> m_table;
  std::atomic<int> m_nextPage = 1;
  std::atomic<int> m_threadCount = 0;
  std::atomic<bool> m_isGivenUp = false;

  std::mutex m_mutex; ///< guards what follows
  std::condition_variable m_goOn;
  bool m_isPaused;
  std::set<GlyphrunView*> m_views;
  std::vector<std::thread> m_threads;
};

} // namespace folivex
