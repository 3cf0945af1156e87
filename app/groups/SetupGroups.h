// The groups of the main window's settings.
#pragma once

#include "app/groups/SetupGroup.h"

class QComboBox;
class QPushButton;

namespace folivex {

/// Which file is split, and which of its pages are looked at.
class SourceGroup : public SetupGroup {
public:
  SourceGroup(GroupParts parts, QWidget* parent);
};

/// Which words are looked for, and where on the page.
class SearchGroup : public SetupGroup {
public:
  SearchGroup(GroupParts parts, QWidget* parent);

  /// Opens the page whose words have the positions to type here.
  QPushButton* viewPageButton() const { return m_viewPage; }

private:
  QPushButton* m_viewPage = nullptr;
};

/// Where a document begins and ends.
class RangesGroup : public SetupGroup {
public:
  RangesGroup(GroupParts parts, QWidget* parent);
};

/// How the output files are named.
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

/// Where the outputs go, and what becomes of files that are there.
class OutputGroup : public SetupGroup {
public:
  OutputGroup(GroupParts parts, QWidget* parent);
};

} // namespace folivex
