// RangesGroup: where a document begins and ends.
#pragma once

#include "app/groups/SetupGroup.h"

class QComboBox;

namespace folivex {

class RangesGroup : public SetupGroup {
public:
  RangesGroup(GroupParts parts, QWidget* parent);

  QComboBox* methods() const { return m_methods; }

private:
  QComboBox* m_methods;
};

} // namespace folivex
