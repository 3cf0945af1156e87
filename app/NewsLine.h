// NewsLine: something that the person may want to know, and need not act upon.
#pragma once

#include <QFrame>

#include <functional>

class QLabel;

namespace folivex {

/// Takes no room until there is something to tell, and takes the cursor from nobody.
class NewsLine : public QFrame {
public:
  explicit NewsLine(QWidget* parent);

  /// Shows plain text with a button for more and one that puts the line away.
  void tell(const QString& text, std::function<void()> onMore);

private:
  QLabel* m_text;
  std::function<void()> m_onMore;
};

} // namespace folivex
