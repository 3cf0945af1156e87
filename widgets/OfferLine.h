// OfferLine: something that the person may want to know or do, and need not act upon.
#pragma once

#include "widgets/Tones.h"

#include <QFrame>

#include <functional>
#include <vector>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace folivex {

/// One answer to an offer; the line is put away before it does its work.
struct OfferButton {
  QString text;
  std::function<void()> onClicked;
};

inline constexpr std::size_t mostOfferButtons = 4;

/// Takes no room until there is something to tell, and takes the cursor from nobody.
class OfferLine : public QFrame {
public:
  /// `name` is the line's object name; its text is `name` + "Text", its buttons `name` + their
  /// number from 1, and the one that puts it away `name` + "Later".
  OfferLine(const QString& name, QWidget* parent);

  /// Shows plain text and at most mostOfferButtons answers, in place of what was offered before,
  /// and a button that puts the line away, unless it tells a problem.
  void offer(const QString& text, std::vector<OfferButton> answers, Tone tone = Tone::Plain);

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  /// In a narrow pane the answers stand below the text.
  void fit();

  QBoxLayout* m_layout;
  QBoxLayout* m_row; ///< of the answers
  QLabel* m_text;
  std::vector<OfferButton> m_answers;
  std::vector<QPushButton*> m_buttons; ///< for the answers; made once, for the tab order's sake
  QPushButton* m_later;
};

} // namespace folivex
