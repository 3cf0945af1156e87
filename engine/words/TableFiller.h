// TableFiller: reads the words of a file into a table, on a thread of its own.
#pragma once

#include "engine/words/WordTable.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

struct GlyphrunView;

namespace folivex {

class CPDFTextDumpInit;

/// Reads through a view of its own, which reads ahead, so that the text library's page-by-page
/// state stays another's. Pages come into the table in order.
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
  /// Gives up what is not read, and waits for the thread: as long as a file takes to open at most.
  ~TableFiller();

  // For any thread; none of them waits.
  void giveUp();
  /// Reading stands still soon.
  void setPaused(bool on);
  /// Whether the thread is at work no more.
  bool isFinished() const { return m_isFinished; }

private:
  class View;

  void readFile();
  void readPages(GlyphrunView* view);
  bool readPage(GlyphrunView* view, int page, std::vector<PageWord>& words);
  bool waitWhilePaused();

  CPDFTextDumpInit& m_library;
  Source m_source;
  std::shared_ptr<WordTable> m_table;
  std::atomic<bool> m_isFinished = false;
  std::atomic<bool> m_isGivenUp = false;

  std::mutex m_mutex; ///< guards what follows
  std::condition_variable m_goOn;
  bool m_isPaused;
  GlyphrunView* m_view = nullptr; ///< as long as it is open

  std::thread m_thread; ///< begun when all else is there
};

} // namespace folivex
