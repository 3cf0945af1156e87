#include "widgets/AgreedOnce.h"

#include "platform/FileDigest.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

namespace folivex {

bool isAgreedOnce(Dialogs& dialogs, WindowMemory& memory, QWidget* over,
                  const OnceQuestion& question) {
  const QString key =
      QStringLiteral("agreed/") +
      QString::fromLatin1(platform::FileDigest::ofBytes(question.matter).sha256.toHex());
  if (!memory.text(key).isEmpty()) {
    return true;
  }
  const bool isAgreed = dialogs.question(over, question.text, question.caption);
  if (isAgreed) {
    memory.setText(key, QStringLiteral("yes"));
  }
  return isAgreed;
}

} // namespace folivex
