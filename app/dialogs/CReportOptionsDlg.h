// CReportOptionsDlg: reports, list of names, characters left out of names, gaps between words.
#pragma once

#include "app/dialogs/SetupDialog.h"

namespace folivex {

/// Its settings live in the working copy of the setup alone.
class CReportOptionsDlg : public SetupDialog {
public:
  explicit CReportOptionsDlg(Dialogs& dialogs, QWidget* parent = nullptr);

private:
  QWidget* buildReports();
  QWidget* buildFiles();
};

} // namespace folivex
