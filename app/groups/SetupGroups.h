// The groups of the main window's settings.
#pragma once

#include "app/groups/SetupGroup.h"

class QComboBox;
class QLabel;

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
};

/// Where a document begins and ends.
class RangesGroup : public SetupGroup {
public:
  RangesGroup(GroupParts parts, QWidget* parent);
  void adapt(const SplitSetup& setup);

private:
  QLabel* m_meaning;
};

/// How the output files are named.
class NamesGroup : public SetupGroup {
public:
  NamesGroup(GroupParts parts, QWidget* parent);

  /// Ranges that come from bookmarks are named after them, and only they are. The method that was
  /// chosen before comes back with the words.
  void adapt(const SplitSetup& setup);

private:
  QWidget* tokenButton(QLineEdit* field, const char* name);
  void setByBookmarks(bool byBookmarks);

  QComboBox* m_methods;
  QLabel* m_meaning;
  QString m_methodForWords;
};

/// Where the outputs go, and what becomes of files that are there.
class OutputGroup : public SetupGroup {
public:
  OutputGroup(GroupParts parts, QWidget* parent);
};

struct DialogGroupRow {
  const char* name; ///< object name
  const char* title;
  const char* helpTopic;
  const char* toolTip; ///< of its button
  QString (*words)(const SplitSetup& setup);
};

/// Settings of a dialog of their own: what they come to, and a button that opens it.
class DialogGroup : public QWidget {
public:
  DialogGroup(const DialogGroupRow& row, QWidget* parent);
  void adapt(const SplitSetup& setup);

  std::function<void()> onChange;

private:
  QString (*m_words)(const SplitSetup& setup);
  QLabel* m_text;
};

} // namespace folivex
