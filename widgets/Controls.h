// Controls: what windows make alike.
#pragma once

#include <QSize>
#include <QString>

class QPushButton;
class QWidget;

namespace folivex {

/// A button that Enter presses when it has the cursor, and in no other case: a field or a table
/// beside it keeps its Enter.
QPushButton* sideButton(const char* name, const QString& text, const QString& toolTip,
                        QWidget* parent);

/// Gives a window that is not shown yet its first size, as far as the screen has room for it.
void resizeOnScreen(QWidget* window, QSize wanted);

/// The most that a window can be high on its screen, its frame left out.
int heightOnScreen(const QWidget* window);

} // namespace folivex
