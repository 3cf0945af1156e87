// ElidedLabel: one line of text that gives up its middle where there is no room.
#pragma once

#include <QLabel>

namespace folivex {

/// For paths: the window never grows to fit one. The whole text is the accessible name.
class ElidedLabel : public QLabel {
public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  QSize minimumSizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
};

} // namespace folivex
