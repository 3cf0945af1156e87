// SettingFinding: what there is to say about the content of one setting.
#pragma once

#include <QString>

#include <initializer_list>
#include <vector>

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

using SettingFindings = std::vector<SettingFinding>;

bool hasProblem(const SettingFindings& findings);
/// In this order.
SettingFindings joined(std::initializer_list<SettingFindings> parts);

} // namespace folivex
