// FormGrid: rows of labels and controls, laid out alike in every window.
#pragma once

#include "app/dialogs/SetupBinding.h"

#include <QList>

#include <initializer_list>

class QGridLayout;
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

  /// The label belongs to the first control; a text between controls is a QLabel among them, and
  /// belongs to its buddy. Labels are enabled and disabled with the setting that they belong to.
  void row(const QString& label, std::initializer_list<QWidget*> controls);
  /// Without a label, over both columns.
  void wide(std::initializer_list<QWidget*> controls);

  int rowCount() const { return m_row; }

private:
  void tabThrough(std::initializer_list<QWidget*> controls);
  void followBuddies(std::initializer_list<QWidget*> controls);
  void problemLines(std::initializer_list<QWidget*> controls, int column);

  QGridLayout* m_grid;
  SetupBinding& m_binding;
  QWidget* m_lastStop = nullptr; ///< of the Tab key
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
