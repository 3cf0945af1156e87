#include "engine/base/Operator.h"

#include "engine/base/RecordText.h"

#include <QJsonArray>
#include <QJsonObject>

namespace folivex {

void Operator::found(const Finding& finding) {
  note(finding.text);
  if (!wantsRecords()) {
    return;
  }
  QJsonObject told{{QStringLiteral("type"), QStringLiteral("finding")},
                   {QStringLiteral("kind"), findingWord(finding.kind)}};
  setRecordText(told, QStringLiteral("text"), finding.text);
  if (!finding.pages.empty()) {
    QJsonArray ranges;
    for (const auto& [first, last] : finding.pages) {
      ranges.append(QJsonArray{first, last});
    }
    told[QLatin1StringView("pages")] = ranges;
  }
  record(told);
}

} // namespace folivex
