#include "app/dialogs/CConfigureDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupChecks.h"
#include "engine/output/ExternalCommand.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

CConfigureDlg::CConfigureDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("splitCommand", "Split command", "split-command", checkExternalCommand, dialogs,
                  parent) {
  constexpr int startWidth = 620;
  finish({buildControls()}, {}, startWidth);
}

QWidget* CConfigureDlg::buildControls() {
  auto* controls = new QWidget(this);
  QCheckBox* use = m_binding.box(&SplitSetup::configUseExternal,
                                 QStringLiteral("&Use external command"), controls);
  QLineEdit* command =
      m_binding.field(&SplitSetup::configExternalCommand, controls, SetupBinding::Shown::End);
  QPushButton* browse = browseButton(
      "browseCommand", QStringLiteral("&Browse..."),
      QStringLiteral("Choose the program that is started for each output"), command,
      [this](const QString& now) {
        return m_dialogs.openFile(this, {QStringLiteral("Choose the external program"),
                                         QStringLiteral("Programs (*.exe *.bat);;All files (*)"),
                                         now,
                                         {}});
      });
  QLineEdit* parameters = m_binding.field(&SplitSetup::configExternalParams, controls);
  QPushButton* insert =
      sideButton("insertPlaceholder", QStringLiteral("&Insert"),
                 QStringLiteral("Put a placeholder where the cursor stands"), controls);
  addInsertion(insert, parameters, "[IN]", "the source");
  addInsertion(insert, parameters, "[OUT]", "the output");
  addInsertion(insert, parameters, "[START]", "first page");
  addInsertion(insert, parameters, "[END]", "last page");
  QPushButton* offer =
      sideButton("offerCommand", QStringLiteral("&Default command"),
                 QStringLiteral("Put the usual program and its parameters into both fields"),
                 controls, [command, parameters] {
                   command->setText(offeredExternalCommand());
                   parameters->setText(offeredExternalParams());
                 });
  m_binding.follow(command->objectName(), browse);
  m_binding.follow(command->objectName(), offer);
  m_binding.follow(parameters->objectName(), insert);

  FormGrid grid(controls, m_binding);
  controls->layout()->setContentsMargins(0, 0, 0, 0);
  grid.wide({use});
  grid.row(QStringLiteral("&External program:"), {command, browse});
  grid.row(QStringLiteral("&Parameters:"), {parameters, insert});
  grid.wide({offer});
  return controls;
}

} // namespace folivex
