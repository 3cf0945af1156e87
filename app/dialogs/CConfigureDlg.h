// CConfigureDlg: the outside program that may write the outputs.
#pragma once

#include "app/dialogs/SetupDialog.h"

namespace folivex {

class CConfigureDlg : public SetupDialog {
public:
  explicit CConfigureDlg(Dialogs& dialogs, QWidget* parent = nullptr);

private:
  QWidget* buildControls();
};

} // namespace folivex
