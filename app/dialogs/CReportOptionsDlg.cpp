#include "app/dialogs/CReportOptionsDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupChecks.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

CReportOptionsDlg::CReportOptionsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("reportOptions", QStringLiteral("Report and file options"),
                  QStringLiteral("report-options"), dialogs, parent) {
  constexpr int startWidth = 620;
  finish({buildReports(), buildFiles()}, {}, startWidth);
}

QWidget* CReportOptionsDlg::buildReports() {
  auto* group = new QGroupBox(QStringLiteral("Reports"), this);
  auto* txt = new QCheckBox(QStringLiteral("Always write out a &txt report file"), group);
  auto* csv = new QCheckBox(QStringLiteral("Always write out a &csv report file"), group);
  auto* current = new QCheckBox(QStringLiteral("&Always write to current source file folder\n"
                                               "if no permissions then it will use output folder"),
                                group);
  auto* folder = new QLineEdit(group);
  m_binding.bind(&SplitSetup::reportOptionsTxt, txt);
  m_binding.bind(&SplitSetup::reportOptionsCsv, csv);
  m_binding.bind(&SplitSetup::reportOptionsCurrent, current);
  m_binding.bind(&SplitSetup::reportOptionsOutputFolder, folder, SetupBinding::Shown::End);
  QPushButton* browse = sideButton("browseReportFolder", QStringLiteral("&Browse..."),
                                   QStringLiteral("Choose the folder of the reports"), group);
  m_binding.follow(folder->objectName(), browse);
  connect(browse, &QPushButton::clicked, this, [this, folder] {
    const QString chosen = m_dialogs.chooseFolder(
        this, QStringLiteral("Choose the folder of the reports"), folder->text());
    if (!chosen.isEmpty()) {
      folder->setText(chosen);
    }
  });
  FormGrid grid(group, m_binding);
  grid.wide({txt});
  grid.wide({csv});
  grid.wide({current});
  grid.row(QStringLiteral("&Report output:"), {folder, browse});
  return group;
}

QWidget* CReportOptionsDlg::buildFiles() {
  auto* group = new QGroupBox(QStringLiteral("Files and words"), this);
  auto* list = new QLineEdit(group);
  auto* removed = new QLineEdit(group);
  QLineEdit* spacing = numberField(group);
  m_binding.bind(&SplitSetup::reportUseFileList, list, SetupBinding::Shown::End);
  m_binding.bind(&SplitSetup::reportRemoveChars, removed);
  m_binding.bind(&SplitSetup::horizWordSpacing, spacing);
  QPushButton* browse = sideButton("browseFileList", QStringLiteral("Br&owse..."),
                                   QStringLiteral("Choose the list of names"), group);
  connect(browse, &QPushButton::clicked, this, [this, list] {
    const QString chosen =
        m_dialogs.openFile(this, {QStringLiteral("Choose the list of names"),
                                  QStringLiteral("Text files (*.txt *.lst);;All files (*)"),
                                  list->text(),
                                  {}});
    if (!chosen.isEmpty()) {
      list->setText(chosen);
    }
  });
  FormGrid grid(group, m_binding);
  grid.row(QStringLiteral("&Filelist:"), {list, browse});
  grid.row(QStringLiteral("Remove c&hars:"), {removed});
  grid.row(
      QStringLiteral("Horizontal &Spacing Detection:"),
      {spacing, new QLabel(QStringLiteral("(default is 1.02, more is more tolerant)"), group)});
  return group;
}

SettingFindings CReportOptionsDlg::check(const SplitSetup& setup) const {
  return checkReportOptions(setup);
}

} // namespace folivex
