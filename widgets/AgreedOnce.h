// AgreedOnce: a question whose Yes is remembered.
#pragma once

#include <QString>

class QWidget;

namespace folivex {

class Dialogs;
class WindowMemory;

/// What is asked. The Yes is for `matter`, whatever the words around it; a No is for now only.
struct OnceQuestion {
  QString text;
  QString caption;
  QByteArray matter; ///< any bytes; their digest is what is remembered
};

/// True when the person says Yes, or has said it before.
bool isAgreedOnce(Dialogs& dialogs, WindowMemory& memory, QWidget* over,
                  const OnceQuestion& question);

} // namespace folivex
