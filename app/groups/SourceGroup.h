// SourceGroup: which file is split, and which of its pages are looked at.
#pragma once

#include "app/groups/SetupGroup.h"

namespace folivex {

class SourceGroup : public SetupGroup {
public:
  SourceGroup(GroupParts parts, QWidget* parent);

private:
  void chooseSource(QLineEdit* field);
};

} // namespace folivex
