// PageStrip: all pages of a file, small, banded by the documents that they go to.
#pragma once

#include "app/viewer/ViewedPage.h"

#include <QCache>
#include <QListView>

#include <functional>
#include <memory>
#include <optional>

namespace folivex {

class CPDFTextDumpInit;
class PageLoader;

/// The pages of one output, from 1, both included.
struct PageBand {
  int firstPage = 0;
  int lastPage = 0;
  QString title; ///< of the output; shown at its first page

  bool operator==(const PageBand&) const = default;
};

/// The current page is the one chosen. Only pages in sight, and those next to them, are drawn, by a
/// thread of their own; there is no widget for a page.
class PageStrip : public QListView {
public:
  explicit PageStrip(QWidget* parent = nullptr);
  ~PageStrip() override;

  /// Without a library there are no pages. `library` must outlive the strip.
  void setLibrary(CPDFTextDumpInit& library);

  /// Shows that many pages of a file, from the first on; none while it is not known how many.
  void showFile(const ViewedFile& file, int pageCount);

  /// Which pages go together. A page in none of the bands is left over and looks like it, but for
  /// an empty optional: then nothing is known of any page.
  void setBands(std::optional<std::vector<PageBand>> bands);

  /// Marks a page (from 1) without telling onPageChosen.
  void setCurrentPage(int page);
  /// 0 while no file is open.
  int currentPage() const;

  /// The person went to a page, by mouse or keyboard.
  std::function<void(int page)> onPageChosen = [](int) {};

protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  class Pages;
  class Look;

  void arrived(const ViewedPage& page);
  void layOut();
  void request();
  const PageBand* bandOf(int page) const;

  ViewedFile m_file;
  int m_columns = 1;
  bool m_isQuiet = false;                       ///< the current page is being set, not chosen
  std::optional<std::vector<PageBand>> m_bands; ///< by first page
  QCache<int, QImage> m_pictures;               ///< by page; null for one that cannot be drawn
  std::unique_ptr<Pages> m_pages;
  std::unique_ptr<Look> m_look;
  std::unique_ptr<PageLoader> m_loader; ///< ends first: its answers use all of the above
};

} // namespace folivex
