// ElidedLabel: one line of text that gives up its middle where there is no room.
#pragma once

#include <QLabel>

namespace folivex {

/// For paths and texts of pages: the window never grows to fit one. The whole text is the
/// accessible name, and the tool tip while it is cut.
class ElidedLabel : public QLabel {
public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  QSize minimumSizeHint() const override;

protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

} // namespace folivex
