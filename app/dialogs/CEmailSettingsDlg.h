// CEmailSettingsDlg: server, message, and where addresses stand on the pages.
#pragma once

#include "app/dialogs/SetupDialog.h"

class QPushButton;

namespace folivex {

class CEmailSettingsDlg : public SetupDialog {
public:
  explicit CEmailSettingsDlg(Dialogs& dialogs, QWidget* parent = nullptr);

  /// Sends one mail with these settings and says what came of it. Without it the button is
  /// disabled.
  std::function<void(const SplitSetup& setup)> onSendTest;

protected:
  QSet<QString> idle(const SplitSetup& setup) const override;
  void showEvent(QShowEvent* event) override;

private:
  QWidget* buildServer();
  QWidget* buildSending();
  QWidget* buildMessage();
  QWidget* buildSearch();
  void sendTest();

  QPushButton* m_sendTest = nullptr;
};

} // namespace folivex
