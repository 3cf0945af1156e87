#include "engine/base/Operator.h"

#include <QJsonObject>

namespace folivex {

void Operator::found(RunFinding kind, const QString& text) {
  note(text);
  if (wantsRecords()) {
    record({{QStringLiteral("type"), QStringLiteral("finding")},
            {QStringLiteral("kind"), findingWord(kind)},
            {QStringLiteral("text"), text}});
  }
}

} // namespace folivex
