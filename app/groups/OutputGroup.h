// OutputGroup: where the outputs go, and what becomes of files that are there.
#pragma once

#include "app/groups/SetupGroup.h"

namespace folivex {

class OutputGroup : public SetupGroup {
public:
  OutputGroup(GroupParts parts, QWidget* parent);

private:
  void chooseFolder(QLineEdit* field);
};

} // namespace folivex
