// CProblemReportDlg: shows a report of a problem before anything leaves the computer.
#pragma once

#include "app/help/ProblemReport.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace folivex {

class Dialogs;
class WindowMemory;

/// The text can be changed freely; what is sent, copied or saved is what stands there. Nothing is
/// sent from here: a mail is handed to the person's own mail program.
class CProblemReportDlg : public QDialog {
public:
  /// `dialogs` and `memory` must outlive the dialog. The memory keeps the address that the report
  /// goes to.
  CProblemReportDlg(ProblemReport report, Dialogs& dialogs, WindowMemory& memory,
                    QWidget* parent = nullptr);
  ~CProblemReportDlg() override;

  void done(int result) override;

protected:
  void showEvent(QShowEvent* event) override;

private:
  void buildControls();
  QWidget* buildButtons();
  void fill();
  void copy();
  void save();
  void openMail();

  ProblemReport m_report;
  Dialogs& m_dialogs;
  WindowMemory& m_memory;

  QPlainTextEdit* m_text = nullptr;
  QCheckBox* m_includeNames = nullptr;
  QLineEdit* m_to = nullptr;
  QLabel* m_told = nullptr;
};

} // namespace folivex
