// FormGrid: rows of labels and controls, laid out alike in every window.
#pragma once

#include "app/dialogs/SetupBinding.h"

#include <QList>

#include <initializer_list>

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace folivex {

/// Fills a grid of two columns: labels, and what belongs to them. Under each row are the lines for
/// the problems of its controls, which take no room while there is nothing to say. The Tab key goes
/// through the controls as they stand.
class FormGrid {
public:
  /// A layout for `owner`, which gets it.
  FormGrid(QWidget* owner, SetupBinding& binding);
  /// For a narrow form: labels of this width, in pixels, and wrapped. The Tab key comes here from
  /// `after`.
  FormGrid(QWidget* owner, SetupBinding& binding, int labelWidth, QWidget* after);

  /// The label belongs to the first control; a text between controls is a QLabel among them, and
  /// belongs to its buddy. Labels are enabled and disabled with the setting that they belong to.
  void row(const QString& label, std::initializer_list<QWidget*> controls);
  /// Without a label, over both columns.
  void wide(std::initializer_list<QWidget*> controls);

  /// A text over both columns, seen as long as the setting means something; without a
  /// setting, always.
  void sentence(const QString& key, QLabel* text);

  int rowCount() const { return m_row; }
  QWidget* lastStop() const { return m_lastStop; } ///< of the Tab key; null before the first

private:
  void tabThrough(std::initializer_list<QWidget*> controls);
  void followBuddies(std::initializer_list<QWidget*> controls);
  void problemLines(std::initializer_list<QWidget*> controls, int column);
  void keepTogether(std::initializer_list<QWidget*> controls, QWidget* label);

  QGridLayout* m_grid;
  SetupBinding& m_binding;
  int m_labelWidth = 0; ///< 0: as wide as its widest
  QWidget* m_lastStop = nullptr;
  int m_row = 0;
};

/// Adds an entry to the button's menu that inserts `text` where the cursor of the field stands.
void addInsertion(QPushButton* button, QLineEdit* field, const char* text, const char* meaning);

/// Makes the columns of labels in these owners of grids equally wide.
void alignLabels(const QList<QWidget*>& owners);

/// How high `owner` must be for all of its rows at its width, lines that were shown just now
/// included.
int heightForContent(QWidget* owner);

} // namespace folivex
