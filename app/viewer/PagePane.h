// PagePane: shows a file's pages as they look, and takes what is pointed at for a setting.
#pragma once

#include "app/viewer/PageCanvas.h"
#include "app/viewer/PageLoader.h"
#include "engine/suggest/WordMeaning.h"
#include "widgets/OfferLine.h"

#include <QCache>
#include <QWidget>

#include <functional>
#include <optional>

class QAction;
class QLabel;
class QMenu;
class QPushButton;
class QSpinBox;
class QStackedWidget;
class QToolButton;

namespace folivex {

class FindBar;
class PageArea;
class PageNotice;
class WordTable;

/// A file is opened, read and drawn by a thread of its own.
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
  /// The words of all pages of the file, which are looked through; null while there are none.
  void setWords(std::shared_ptr<const WordTable> words);

  /// Turns to a page (from 1), or to the nearest that there is, as soon as the file is open.
  void goToPage(int page);
  int page() const { return m_page; }
  /// 0 while no file is open.
  int pageCount() const { return m_pageCount; }

  /// Words that a plan takes for something, in page order; null for none.
  void setMarks(std::shared_ptr<const std::vector<PlanMark>> marks);

  /// The person took a word, or an area, for something, in the menu that a click on it brings up,
  /// which offers meanings to somebody who listens.
  std::function<void(Meaning meaning, const Picked& picked)> onMeant;
  /// Says what came of it, until the next menu.
  void tell(const QString& text);

  /// A line above the page, until it is answered or put away.
  void showOffer(const QString& text, std::vector<OfferButton> buttons);

  /// Asks for a text, and goes to the places that have it.
  void find();
  /// The next such place, or the one before when `way` is -1; asks for the text when there is none.
  void findNext(int way);

  /// The walk through the matches. While it is on, a row tells how it goes, and offers to go on
  /// from a match that is shown.
  void beginWalk();
  void tellWalk(const QString& text);
  void showMatch(const PlanMark& match, int number);
  void endWalk();
  std::function<void()> onNext;
  std::function<void()> onStop; ///< the button, or Escape

  /// A file was opened, or is open no more.
  std::function<void()> onOpened = [] {};
  /// Another page is shown (from 1), or none any more (0).
  std::function<void(int page)> onPageChanged = [](int) {};
  /// Buttons that stand in the page's place while there is no file.
  std::function<void()> onOpenWanted = [] {};
  std::function<void()> onSampleWanted = [] {};
  /// The password that the person typed has opened the file; file() has it.
  std::function<void(const QString& password)> onPassword = [](const QString&) {};

protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  // Controls
  void buildControls();
  QWidget* buildPageRow();
  QToolButton* buildZoomButton();
  QWidget* buildWalkRow();
  void connectPage();
  void updateControls();

  void reload();
  void opened(const OpenedFile& file);
  void leavePage();
  void turn(int pages);
  enum class From { Top, Bottom };
  void showPage(int page, From from);
  void arrived(const std::shared_ptr<const ViewedPage>& page);
  void display(const std::shared_ptr<const ViewedPage>& page);
  std::shared_ptr<const ViewedPage> kept(int page);
  bool isSharp(int page);
  void request();
  PageSizing sizing() const;
  double zoom() const;
  void setFit(PageSizing::Fit fit, double zoom);
  void zoomBy(double steps);
  void fitAgain();

  bool isWalking() const;
  void stopWalk();
  void tellMatch();

  // What is pointed at
  std::optional<Picked> picked() const;
  void offerMenu(QPoint place);
  void fillMenu(QMenu* menu, const Picked& picked);
  void tellCurrent();
  void copyPosition();

  ViewedFile m_file;
  int m_page = 0; ///< or the one to be shown once the file is open
  int m_pageCount = 0;
  bool m_isOpening = false;
  bool m_isPasswordTyped = false; ///< by the person, into the pane; not told yet
  PageSizing::Fit m_fit = PageSizing::Fit::Width;
  double m_zoom = 1;
  std::shared_ptr<const std::vector<PlanMark>> m_marks;
  std::optional<PlanMark> m_match;
  int m_matchNumber = 0;
  QCache<int, std::shared_ptr<const ViewedPage>> m_cache; ///< by page; its cost is bytes

  OfferLine* m_offer = nullptr;
  FindBar* m_findBar = nullptr;
  PageArea* m_area = nullptr;
  PageCanvas* m_canvas = nullptr;
  QStackedWidget* m_stack = nullptr;
  PageNotice* m_notice = nullptr;
  QWidget* m_pageRow = nullptr;
  QToolButton* m_previous = nullptr;
  QToolButton* m_next = nullptr;
  QSpinBox* m_pageField = nullptr;
  QLabel* m_pageCountText = nullptr;
  QToolButton* m_zoomOut = nullptr;
  QToolButton* m_zoomIn = nullptr;
  QToolButton* m_zoomChoice = nullptr;
  QAction* m_fitWidth = nullptr;
  QAction* m_fitPage = nullptr;
  QToolButton* m_search = nullptr;
  QWidget* m_walkRow = nullptr;
  QLabel* m_walkText = nullptr;
  QPushButton* m_nextMatch = nullptr;
  QLabel* m_wordText = nullptr;
  QLabel* m_told = nullptr;
  QLabel* m_pageProblem = nullptr;

  std::unique_ptr<PageLoader> m_loader; ///< ends first: its answers use all of the above
};

} // namespace folivex
