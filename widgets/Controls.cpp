#include "widgets/Controls.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
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

/// Pixels left free around a window. A dialog is centred before anybody knows its windowFrame, a
/// little above the middle: with less than this its title would stand above the screen.
constexpr QSize windowFrame(8, 80);

void place(QBoxLayout& layout, std::initializer_list<Placed> controls) {
  for (const Placed& placed : controls) {
    if (placed.control == nullptr) {
      layout.addStretch(placed.stretch);
    } else {
      layout.addWidget(placed.control, placed.stretch);
    }
  }
}

} // namespace

QPushButton* sideButton(const char* name, const QString& text, const QString& toolTip,
                        QWidget* parent, std::function<void()> onClicked) {
  auto* button = named(new SideButton(text, parent), name);
  button->setToolTip(toolTip);
  button->setAutoDefault(false);
  if (onClicked) {
    QObject::connect(button, &QPushButton::clicked, button, std::move(onClicked));
  }
  return button;
}

QWidget* okAndCancel(QDialog* dialog, const char* okToolTip, const char* cancelToolTip) {
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
  named(buttons->button(QDialogButtonBox::Ok), "ok", okToolTip)->setDefault(true);
  named(buttons->button(QDialogButtonBox::Cancel), "cancel", cancelToolTip);
  QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  return buttons;
}

QLineEdit* numberField(QWidget* parent, int characters) {
  auto* field = new QLineEdit(parent);
  const int width = field->fontMetrics().horizontalAdvance(QString(characters, u'9'));
  field->setFixedWidth(width + field->minimumSizeHint().width());
  field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  return field;
}

QLabel* labelFor(QWidget* field, const QString& text) {
  auto* label = new QLabel(text, field->parentWidget());
  label->setBuddy(field);
  return label;
}

QWidget* sideBySide(QWidget* parent, std::initializer_list<Placed> controls) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  place(*layout, controls);
  return row;
}

void stack(QWidget* owner, std::initializer_list<Placed> controls) {
  place(*new QVBoxLayout(owner), controls);
}

void resizeOnScreen(QWidget* window, QSize wanted) {
  window->resize(wanted.boundedTo(window->screen()->availableSize() - windowFrame));
}

int heightOnScreen(const QWidget* window) {
  return window->screen()->availableSize().height() - windowFrame.height();
}

} // namespace folivex
