// NamesGroup: how the output files are named.
#pragma once

#include "app/groups/SetupGroup.h"

class QComboBox;

namespace folivex {

class NamesGroup : public SetupGroup {
public:
  NamesGroup(GroupParts parts, QWidget* parent);

  /// Ranges that come from bookmarks are named after them, and only they are. The method that was
  /// chosen before comes back with the words.
  void setByBookmarks(bool byBookmarks);

private:
  QWidget* tokenButton(QLineEdit* field, const char* name);

  QComboBox* m_methods;
  QString m_methodForWords;
};

} // namespace folivex
