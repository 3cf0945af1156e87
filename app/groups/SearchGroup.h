// SearchGroup: which words are looked for, and where on the page.
#pragma once

#include "app/groups/SetupGroup.h"

class QPushButton;

namespace folivex {

class SearchGroup : public SetupGroup {
public:
  SearchGroup(GroupParts parts, QWidget* parent);

  /// Opens the page whose words have the positions to type here.
  QPushButton* viewPageButton() const { return m_viewPage; }

private:
  QPushButton* m_viewPage;
};

} // namespace folivex
