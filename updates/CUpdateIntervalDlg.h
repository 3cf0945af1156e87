// CUpdateIntervalDlg: whether and how often to look for a newer version, and looking at once.
#pragma once

#include "updates/UpdateCheck.h"
#include "widgets/Dialogs.h"
#include "widgets/FieldProblem.h"
#include "widgets/Theme.h"

#include <QDialog>

#include <memory>

class QBoxLayout;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace folivex {

/// OK keeps the settings, Cancel leaves them as they were. Closing stops a check that runs.
class CUpdateIntervalDlg : public QDialog {
public:
  /// Both must outlive the dialog.
  CUpdateIntervalDlg(UpdateCheck& check, Dialogs& dialogs, QWidget* parent = nullptr);
  ~CUpdateIntervalDlg() override;

  void accept() override;

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void makeFields();
  void makeCheckRow();
  void layOut();
  QBoxLayout* intervalRow();
  void connectFields();

  UpdateSettings entered() const;
  void fill(const UpdateSettings& settings);
  void showLastCheck(const QDateTime& lastCheck);
  void followFields();
  void makeRoom();
  void tellProblem(const QString& problem);
  void checkNow();
  void openPage();
  void showResult(const UpdateResult& result);
  void tellResult(const QString& text, Tone tone);

  UpdateCheck& m_check;
  Dialogs& m_dialogs;
  QCheckBox* m_on = nullptr;
  QSpinBox* m_days = nullptr;
  QLineEdit* m_address = nullptr;
  std::unique_ptr<FieldProblem> m_addressProblem;
  QLabel* m_lastCheck = nullptr;
  QPushButton* m_checkNow = nullptr;
  QLabel* m_result = nullptr;
  QLabel* m_note = nullptr;
  QPushButton* m_openPage = nullptr;
  QString m_page;
};

} // namespace folivex
