// CConfigureDlg: the outside program that may write the outputs.
#pragma once

#include "app/dialogs/SetupDialog.h"

class QLineEdit;

namespace folivex {

class CConfigureDlg : public SetupDialog {
public:
  explicit CConfigureDlg(Dialogs& dialogs, QWidget* parent = nullptr);

protected:
  SettingFindings check(const SplitSetup& setup) const override;

private:
  QWidget* buildControls();
  QWidget* placeholderButton(QWidget* parent);
  QWidget* offerButton(QWidget* parent);
  void chooseProgram();

  QLineEdit* m_command = nullptr;
  QLineEdit* m_parameters = nullptr;
};

} // namespace folivex
