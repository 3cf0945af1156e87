#include "app/dialogs/CReportOptionsDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupChecks.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

CReportOptionsDlg::CReportOptionsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("reportOptions", "Report and file options", "report-options", checkReportOptions,
                  dialogs, parent) {
  constexpr int startWidth = 620;
  finish({buildReports(), buildFiles()}, {}, startWidth);
}

QWidget* CReportOptionsDlg::buildReports() {
  auto* group = new QGroupBox(QStringLiteral("Reports"), this);
  QCheckBox* txt = m_binding.box(&SplitSetup::reportOptionsTxt,
                                 QStringLiteral("Always write out a &txt report file"), group);
  QCheckBox* csv = m_binding.box(&SplitSetup::reportOptionsCsv,
                                 QStringLiteral("Always write out a &csv report file"), group);
  QCheckBox* current =
      m_binding.box(&SplitSetup::reportOptionsCurrent,
                    QStringLiteral("&Always write to current source file folder\n"
                                   "if no permissions then it will use output folder"),
                    group);
  QLineEdit* folder =
      m_binding.field(&SplitSetup::reportOptionsOutputFolder, group, SetupBinding::Shown::End);
  const QString title = QStringLiteral("Choose the folder of the reports");
  QPushButton* browse = browseButton(
      "browseReportFolder", QStringLiteral("&Browse..."), title, folder,
      [this, title](const QString& now) { return m_dialogs.chooseFolder(this, title, now); });
  m_binding.follow(folder->objectName(), browse);
  FormGrid grid(group, m_binding);
  grid.wide({txt});
  grid.wide({csv});
  grid.wide({current});
  grid.row(QStringLiteral("&Report output:"), {folder, browse});
  return group;
}

QWidget* CReportOptionsDlg::buildFiles() {
  auto* group = new QGroupBox(QStringLiteral("Files and words"), this);
  QLineEdit* list =
      m_binding.field(&SplitSetup::reportUseFileList, group, SetupBinding::Shown::End);
  const QString title = QStringLiteral("Choose the list of names");
  QPushButton* browse = browseButton(
      "browseFileList", QStringLiteral("Br&owse..."), title, list,
      [this, title](const QString& now) {
        return m_dialogs.openFile(
            this, {title, QStringLiteral("Text files (*.txt *.lst);;All files (*)"), now, {}});
      });
  QLineEdit* removed = m_binding.field(&SplitSetup::reportRemoveChars, group);
  QLineEdit* spacing = numberField(group);
  m_binding.bind(&SplitSetup::horizWordSpacing, spacing);
  FormGrid grid(group, m_binding);
  grid.row(QStringLiteral("&Filelist:"), {list, browse});
  grid.row(QStringLiteral("Remove c&hars:"), {removed});
  grid.row(
      QStringLiteral("Horizontal &Spacing Detection:"),
      {spacing, new QLabel(QStringLiteral("(default is 1.02, more is more tolerant)"), group)});
  return group;
}

} // namespace folivex
