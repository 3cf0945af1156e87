// SettingFinding: what there is to say about the content of one setting.
#pragma once

#include <QList>
#include <QString>

#include <algorithm>

namespace folivex {

enum class FindingKind {
  Problem, ///< the work cannot begin with it
  Hint     ///< it can, but the person should know
};

struct SettingFinding {
  QString key;  ///< of the setup ("FINDSTRING")
  QString text; ///< in plain words, one sentence
  FindingKind kind = FindingKind::Problem;
};

using SettingFindings = QList<SettingFinding>;

inline bool hasProblem(const SettingFindings& findings) {
  return std::ranges::find(findings, FindingKind::Problem, &SettingFinding::kind) != findings.end();
}

} // namespace folivex
