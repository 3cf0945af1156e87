// Controls: those that windows make alike.
#pragma once

#include <QString>

class QPushButton;
class QWidget;

namespace folivex {

/// A button that Enter in a field or a table beside it does not press.
QPushButton* sideButton(const char* name, const QString& text, const QString& toolTip,
                        QWidget* parent);

} // namespace folivex
