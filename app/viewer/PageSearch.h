// PageSearch: the next page of a file that has a text.
#pragma once

#include "app/viewer/ViewedPage.h"

#include <functional>
#include <memory>

namespace folivex {

class CPDFTextDumpInit;
class PageLoader;

/// Reads page after page beside the window's thread. Answers come in the window's event loop, none
/// after stop() and only those of the search begun last.
class PageSearch {
public:
  /// `library` must outlive this.
  explicit PageSearch(CPDFTextDumpInit& library);
  ~PageSearch();

  enum class Way { Forwards, Backwards };
  /// Looks at every page once, from `firstPage` (from 1) on, around the end or the beginning.
  void start(const ViewedFile& file, const QString& text, int firstPage, int pageCount, Way way);
  void stop();

  std::function<void(int page)> onFound;
  std::function<void(int page)> onLookedAt; ///< it does not have the text
  std::function<void()> onNotFound;

private:
  void request();
  void arrived(const ViewedPage& page);

  ViewedFile m_file;
  QString m_text;
  std::vector<int> m_pages; ///< still to look at, the next one last
  std::size_t m_asked = 0;  ///< how many of them are on their way
  std::unique_ptr<PageLoader> m_loader;
};

} // namespace folivex
