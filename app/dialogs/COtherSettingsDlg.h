// COtherSettingsDlg: what is removed from the output folder and from names.
#pragma once

#include "app/dialogs/SetupDialog.h"

namespace folivex {

class COtherSettingsDlg : public SetupDialog {
public:
  explicit COtherSettingsDlg(Dialogs& dialogs, QWidget* parent = nullptr);
};

} // namespace folivex
