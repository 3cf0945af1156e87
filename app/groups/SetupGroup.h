// SetupGroup: one group of settings in the rules.
#pragma once

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupBinding.h"
#include "widgets/Foldout.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace folivex {

class Dialogs;
class WindowMemory;

/// What every group is made with. All of it outlives the window's controls.
struct GroupParts {
  SetupBinding& binding;
  Dialogs& dialogs;
  WindowMemory& memory;
};

/// Rows in front, and the rarer ones below them in a part of their own that unfolds. Its last line,
/// seen when it is folded, too, says what comes of the settings.
class SetupGroup : public Foldout {
public:
  /// What the settings do to the file that is open; empty: not known.
  void setEffect(const QString& text);
  /// Values of settings that mean nothing now, and are not seen; empty: none.
  void setKept(const QString& text);
  /// The part of rarer rows, null when there is none.
  Foldout* more() const { return m_more; }

protected:
  /// `helpTopic` is what F1 opens inside the group.
  SetupGroup(const char* name, const QString& title, const char* helpTopic, GroupParts parts,
             QWidget* parent);

  FormGrid frontGrid();
  /// To be called once, after the rows of `front`.
  FormGrid moreGrid(const char* name, const FormGrid& front);

  /// Fields for text of a setting. A file dropped on one is for the window, not for its text.
  QLineEdit* textField(QString SplitSetup::*setting,
                       SetupBinding::Shown shown = SetupBinding::Shown::Front);
  QLineEdit* wholeField(int SplitSetup::*setting, WholeLimits limits = {});
  QLineEdit* positionField(QString SplitSetup::*setting);
  QCheckBox* box(bool SplitSetup::*setting, const QString& label);
  /// A text between two controls, which is the label of one of them.
  QLabel* between(const QString& text, QWidget* of);
  /// A button that fills `field`; it begins there, or where the person chose last.
  QPushButton* browseButton(const char* name, const QString& text, const QString& toolTip,
                            QLineEdit* field, const char* memoryKey,
                            std::function<QString(const QString& start)> choose);
  /// A list to choose from, which never makes the form wider.
  QComboBox* list(QString SplitSetup::*setting);
  /// A sentence that explains something.
  QLabel* quietLabel(const char* name, const char* text = "");

  GroupParts m_parts;

private:
  int labelWidth() const;

  QWidget* m_front;
  Foldout* m_more = nullptr;
  QLabel* m_kept;
  QLabel* m_effect;
};

} // namespace folivex
