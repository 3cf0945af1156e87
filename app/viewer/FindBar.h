// FindBar: finds a text on the pages, from place to place.
#pragma once

#include "widgets/Theme.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class QLabel;
class QLineEdit;

namespace folivex {

class PageCanvas;
class WordTable;

/// Looks at every page once, around the end or the beginning, on the page shown first. Enter goes
/// on, Shift+Enter back, Escape puts the bar away. Hidden until it is opened.
class FindBar : public QWidget {
public:
  explicit FindBar(QWidget* parent);
  /// Shows the pages and covers the places found.
  void setCanvas(PageCanvas* canvas) { m_canvas = canvas; }
  /// Of all pages; null while they are not known. They may still be coming in.
  void setWords(std::shared_ptr<const WordTable> words);

  /// Shows it, ready to be typed into.
  void open();
  void close();
  /// Looks for nothing, and is not seen.
  void leave();
  /// The next place, or the one before when `way` is -1; asks for the text when there is none.
  void goOn(int way);
  /// The canvas shows another page, or more of it.
  void pageShown();

  std::function<void(int page)> onFound; ///< the page is to be shown

protected:
  void keyPressEvent(QKeyEvent* event) override;

private:
  void seek();
  void stop();
  void lookBehind(int page);
  void look();
  void goToHit(int hit);
  void tell(const QString& text, Tone tone = Tone::Plain);

  PageCanvas* m_canvas = nullptr;
  std::shared_ptr<const WordTable> m_words;
  int m_way = 1;
  bool m_isLooking = false;
  int m_page = 0;   ///< looked at last
  int m_looked = 0; ///< pages so far
  int m_found = 0;  ///< page whose place is to be gone to once it is there
  QTimer m_turns;
  QLineEdit* m_text;
  QLabel* m_told;
};

} // namespace folivex
