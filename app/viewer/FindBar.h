// FindBar: asks for a text on the pages, and goes from place to place.
#pragma once

#include "widgets/Theme.h"

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;

namespace folivex {

/// Enter goes on, Shift+Enter back, Escape puts the bar away. Hidden until it is opened.
class FindBar : public QWidget {
public:
  explicit FindBar(QWidget* parent);

  /// Shows it, ready to be typed into.
  void open();
  void close();
  QString text() const;
  void tell(const QString& text, Tone tone = Tone::Plain);

  std::function<void()> onTyped;
  std::function<void(int way)> onGoOn; ///< 1 forwards, -1 backwards
  std::function<void()> onClosed;

protected:
  void keyPressEvent(QKeyEvent* event) override;

private:
  QLineEdit* m_text;
  QLabel* m_told;
};

} // namespace folivex
