#include "widgets/Controls.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>

namespace folivex {

namespace {

class SideButton : public QPushButton {
public:
  using QPushButton::QPushButton;

protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      click();
      return;
    }
    QPushButton::keyPressEvent(event);
  }
};

/// Pixels left free around a window. A dialog is centred before anybody knows its frame, a little
/// above the middle: with less than this its title would stand above the screen.
constexpr QSize frame(8, 80);

} // namespace

QPushButton* sideButton(const char* name, const QString& text, const QString& toolTip,
                        QWidget* parent) {
  auto* button = new SideButton(text, parent);
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(toolTip);
  button->setAutoDefault(false);
  return button;
}

void resizeOnScreen(QWidget* window, QSize wanted) {
  window->resize(wanted.boundedTo(window->screen()->availableSize() - frame));
}

int heightOnScreen(const QWidget* window) {
  return window->screen()->availableSize().height() - frame.height();
}

} // namespace folivex
