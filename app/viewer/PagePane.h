// PagePane: shows a file's pages as they look, and what its words' positions are.
#pragma once

#include "app/viewer/PageCanvas.h"
#include "app/viewer/PageLoader.h"

#include <QCache>
#include <QWidget>

#include <functional>
#include <optional>

class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QStackedWidget;
class QToolButton;

namespace folivex {

class PageArea;

/// A word that was picked. Page from 1; h and v as a search counts them, lookupH and lookupV as a
/// look-up by position does.
struct PickedWord {
  QString text;
  int h = 0;
  int v = 0;
  int lookupH = 0;
  int lookupV = 0;
  int page = 0;
};

/// A rectangle that was drawn. Page from 1.
struct PickedRange {
  int page = 0;
  int hFrom = 0;
  int hTo = 0;
  int vFrom = 0;
  int vTo = 0;
};

/// A part of a window, or a window of its own. A file is opened, read and drawn by a thread of its
/// own.
class PagePane : public QWidget {
public:
  explicit PagePane(QWidget* parent = nullptr);
  ~PagePane() override;

  /// Without a library nothing can be opened, and the pane says so. `library` must outlive it.
  void setLibrary(CPDFTextDumpInit& library);

  /// Opens a file at its first page; the one that is open stays at its page.
  void openFile(const ViewedFile& file);
  void closeFile();
  const ViewedFile& file() const { return m_file; }

  /// Turns to a page (from 1), or to the nearest that there is, as soon as the file is open.
  void goToPage(int page);
  int page() const { return m_page; }
  /// 0 while no file is open.
  int pageCount() const { return m_pageCount; }

  /// What a pick may be meant for; the index of the one chosen goes with each pick (-1 when there
  /// are none).
  void setTargets(const QStringList& targets);
  void setTarget(int index);
  std::function<void(const PickedWord& word, int target)> onWordPicked;
  std::function<void(const PickedRange& range, int target)> onRangePicked;
  /// Says what came of a pick, until the next word is pointed at.
  void tell(const QString& text);

  /// The walk through the matches. While it is on, a row tells the match and offers to go on.
  void beginWalk();
  void tellWalk(const QString& text);
  void showMatch(const MatchMark& match, int number);
  /// Between two matches there is nothing to go on from.
  void leaveMatch();
  void endWalk();
  std::function<void()> onNext;
  std::function<void()> onStop; ///< the button, Escape, or the window was closed

  /// Another page is shown (from 1), or none any more (0).
  std::function<void(int page)> onPageChanged;

protected:
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  void buildControls();
  QWidget* buildPageRow();
  QWidget* buildWalkRow();
  QWidget* buildPickRow();
  void connectPage();
  void reload();
  void opened(const OpenedFile& file);
  void arrived(const std::shared_ptr<const ViewedPage>& page);
  void turn(int pages);
  void stopWalk();
  void tellPage();
  enum class From { Top, Bottom };
  void showPage(int page, From from);
  void display(const std::shared_ptr<const ViewedPage>& page);
  std::shared_ptr<const ViewedPage> kept(int page);
  bool isSharp(int page);
  void request();
  PageSizing sizing() const;
  void setFit(PageSizing::Fit fit, double zoom);
  void zoomBy(double steps);
  void fitAgain();
  void showState(const QString& text);
  void tellCurrent();
  void tellMatch();
  void updateControls();
  void pickWord(int word);
  void pickRange(const PositionRange& range);
  QString currentPosition() const;
  void copyPosition();

  ViewedFile m_file;
  int m_page = 0;
  int m_pageCount = 0;
  bool m_isOpening = false;
  int m_pageOnceOpen = 1;
  PageSizing::Fit m_fit = PageSizing::Fit::Width;
  double m_zoom = 1;
  bool m_isWalking = false;
  std::optional<MatchMark> m_match;
  int m_matchNumber = 0;
  QCache<int, std::shared_ptr<const ViewedPage>> m_cache; ///< by page; its cost is bytes

  PageArea* m_area = nullptr;
  PageCanvas* m_canvas = nullptr;
  QStackedWidget* m_stack = nullptr;
  QLabel* m_state = nullptr;
  QToolButton* m_first = nullptr;
  QToolButton* m_previous = nullptr;
  QToolButton* m_next = nullptr;
  QToolButton* m_last = nullptr;
  QSpinBox* m_pageField = nullptr;
  QLabel* m_pageCountText = nullptr;
  QToolButton* m_zoomOut = nullptr;
  QToolButton* m_zoomIn = nullptr;
  QLabel* m_zoomText = nullptr;
  QToolButton* m_fitWidth = nullptr;
  QToolButton* m_fitPage = nullptr;
  QToolButton* m_reload = nullptr;
  QWidget* m_walkRow = nullptr;
  QLabel* m_walkText = nullptr;
  QPushButton* m_nextMatch = nullptr;
  QPushButton* m_stopMatches = nullptr;
  QLabel* m_targetLabel = nullptr;
  QComboBox* m_targets = nullptr;
  QLabel* m_wordText = nullptr;
  QLabel* m_pageProblem = nullptr;
  QPushButton* m_copy = nullptr;

  std::unique_ptr<PageLoader> m_loader; ///< ends first: its answers use all of the above
};

} // namespace folivex
