// SettingDialogs: the settings that have a dialog of their own.
#pragma once

#include "app/dialogs/SetupDialog.h"

namespace folivex {

/// The outside program that may write the outputs.
class CConfigureDlg : public SetupDialog {
public:
  explicit CConfigureDlg(Dialogs& dialogs, QWidget* parent = nullptr);
};

/// What is removed from the output folder and from names.
class COtherSettingsDlg : public SetupDialog {
public:
  explicit COtherSettingsDlg(Dialogs& dialogs, QWidget* parent = nullptr);
};

/// Reports, list of names, characters left out of names, gaps between words. Its settings live in
/// the working copy of the setup alone.
class CReportOptionsDlg : public SetupDialog {
public:
  explicit CReportOptionsDlg(Dialogs& dialogs, QWidget* parent = nullptr);
};

/// Server, message, and where addresses stand on the pages.
class CEmailSettingsDlg : public SetupDialog {
public:
  explicit CEmailSettingsDlg(Dialogs& dialogs, QWidget* parent = nullptr);

  /// Sends one mail with these settings and says what came of it. Without it the button is
  /// disabled.
  std::function<void(const SplitSetup& setup)> onSendTest;

protected:
  void showEvent(QShowEvent* event) override;

private:
  void sendTest();

  QPushButton* m_sendTest;
};

} // namespace folivex
