// SetupGroup: one group of settings of the main window.
#pragma once

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupBinding.h"

#include <QGroupBox>

class QLineEdit;

namespace folivex {

class Dialogs;
class WindowMemory;

/// What every group is made with. All of it outlives the window's controls.
struct GroupParts {
  SetupBinding& binding;
  Dialogs& dialogs;
  WindowMemory& memory;
};

class SetupGroup : public QGroupBox {
protected:
  /// `helpTopic` is what F1 opens inside the group.
  SetupGroup(const char* name, const QString& title, const char* helpTopic, GroupParts parts,
             QWidget* parent);

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

  GroupParts m_parts;
};

} // namespace folivex
