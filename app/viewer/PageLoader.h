// PageLoader: reads and draws pages beside the window's thread.
#pragma once

#include "app/viewer/ViewedPage.h"

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace folivex {

class CPDFTextDumpInit;

/// One thread owns the text library's view of the file. The functions are called by the thread that
/// made the loader, and its event loop is where the answers come in. No call waits for the thread
/// but the destructor, which gives up the page just being drawn.
class PageLoader {
public:
  enum class Reads { PicturesAndWords, Pictures };
  /// `library` must outlive this.
  explicit PageLoader(CPDFTextDumpInit& library, Reads reads = Reads::PicturesAndWords);
  PageLoader(const PageLoader&) = delete;
  PageLoader& operator=(const PageLoader&) = delete;
  ~PageLoader();

  /// Opens a file, or none, in place of the one before, whose answers then come no more.
  void open(const ViewedFile& file);

  /// The pages to deliver, most wanted first. What was wanted before and is not among them is
  /// dropped.
  void want(const std::vector<int>& pages, const PageSizing& sizing);

  std::function<void(const OpenedFile& file)> onOpened = [](const auto&) {};
  std::function<void(std::shared_ptr<const ViewedPage> page)> onPage = [](const auto&) {};

private:
  class View;

  void work();
  void openView(const ViewedFile& file, int generation);
  void loadPage(int page, const PageSizing& sizing, int generation);
  void changeView(std::unique_ptr<View> view);
  void abandonView();
  void answer(int generation, std::function<void()> tell);

  CPDFTextDumpInit& m_library;
  Reads m_reads;
  QObject m_window;             ///< lives in the window's thread
  std::unique_ptr<View> m_view; ///< the thread's own; only it is changed and abandoned under lock

  std::mutex m_mutex; ///< guards what follows
  std::condition_variable m_due;
  std::optional<ViewedFile> m_toOpen;
  std::deque<int> m_wanted;
  int m_loading = 0; ///< page that is on its way; 0 for none
  PageSizing m_sizing;
  int m_generation = 0; ///< counts the files opened; written by the window's thread alone
  bool m_ending = false;

  std::thread m_thread;
};

} // namespace folivex
