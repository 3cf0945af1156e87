#include "widgets/Controls.h"

#include <QPushButton>

namespace folivex {

QPushButton* sideButton(const char* name, const QString& text, const QString& toolTip,
                        QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(toolTip);
  button->setAutoDefault(false);
  return button;
}

} // namespace folivex
