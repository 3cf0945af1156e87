// Controls: what windows make alike.
#pragma once

#include <QLabel>
#include <QSize>
#include <QString>

#include <functional>
#include <initializer_list>

class QDialog;
class QLineEdit;
class QPushButton;

namespace folivex {

/// A button that Enter presses when it has the cursor, and in no other case: a field or a table
/// beside it keeps its Enter. `onClicked` is what it does, unless somebody connects it.
QPushButton* sideButton(const char* name, const QString& text, const QString& toolTip,
                        QWidget* parent, std::function<void()> onClicked = {});

/// Buttons named "ok", which Enter presses, and "cancel".
QWidget* okAndCancel(QDialog* dialog, const char* okToolTip, const char* cancelToolTip);

/// Gives a control its object name and its tooltip, and back.
template <typename Control>
Control* named(Control* control, const char* name, const char* toolTip = "") {
  control->setObjectName(QString::fromUtf8(name));
  control->setToolTip(QString::fromUtf8(toolTip));
  return control;
}

/// A line edit for a number or a position, with room for this many characters.
QLineEdit* numberField(QWidget* parent, int characters);

/// A text that the Tab key's letter leads from to its field.
QLabel* labelFor(QWidget* field, const QString& text);

/// A control and its share of the room that is left; null is empty room.
struct Placed {
  Placed(QWidget* placed, int share = 0) : control(placed), stretch(share) {}
  QWidget* control;
  int stretch;
};
/// Room that grows between two controls.
inline Placed gap() {
  return {nullptr, 1};
}

/// A part of `parent` with the controls side by side, and no air around them.
QWidget* sideBySide(QWidget* parent, std::initializer_list<Placed> controls);
/// Lays out `owner`: the controls one below the other.
void stack(QWidget* owner, std::initializer_list<Placed> controls);

/// Gives a window that is not shown yet its first size, as far as the screen has room for it.
void resizeOnScreen(QWidget* window, QSize wanted);

/// The most that a window can be high on its screen, its frame left out.
int heightOnScreen(const QWidget* window);

} // namespace folivex
