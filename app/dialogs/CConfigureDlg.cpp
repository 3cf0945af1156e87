#include "app/dialogs/CConfigureDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupChecks.h"
#include "engine/output/ExternalCommand.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include <array>

namespace folivex {

namespace {

struct Placeholder {
  const char* text;
  const char* meaning;
};
constexpr std::array placeholders = {
    Placeholder{"[IN]", "the source"}, Placeholder{"[OUT]", "the output"},
    Placeholder{"[START]", "first page"}, Placeholder{"[END]", "last page"}};

} // namespace

CConfigureDlg::CConfigureDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("splitCommand", QStringLiteral("Split command"), QStringLiteral("split-command"),
                  dialogs, parent) {
  constexpr int startWidth = 620;
  finish({buildControls()}, {}, startWidth);
}

QWidget* CConfigureDlg::buildControls() {
  auto* controls = new QWidget(this);
  auto* use = new QCheckBox(QStringLiteral("&Use external command"), controls);
  m_binding.bind(&SplitSetup::configUseExternal, use);
  m_command = new QLineEdit(controls);
  m_binding.bind(&SplitSetup::configExternalCommand, m_command, SetupBinding::Shown::End);
  QPushButton* browse =
      sideButton("browseCommand", QStringLiteral("&Browse..."),
                 QStringLiteral("Choose the program that is started for each output"), controls);
  connect(browse, &QPushButton::clicked, this, [this] { chooseProgram(); });
  m_parameters = new QLineEdit(controls);
  m_binding.bind(&SplitSetup::configExternalParams, m_parameters);
  QWidget* insert = placeholderButton(controls);
  QWidget* offer = offerButton(controls);
  m_binding.follow(m_command->objectName(), browse);
  m_binding.follow(m_command->objectName(), offer);
  m_binding.follow(m_parameters->objectName(), insert);

  FormGrid grid(controls, m_binding);
  controls->layout()->setContentsMargins(0, 0, 0, 0);
  grid.wide({use});
  grid.row(QStringLiteral("&External program:"), {m_command, browse});
  grid.row(QStringLiteral("&Parameters:"), {m_parameters, insert});
  grid.wide({offer});
  return controls;
}

QWidget* CConfigureDlg::placeholderButton(QWidget* parent) {
  QPushButton* button =
      sideButton("insertPlaceholder", QStringLiteral("&Insert"),
                 QStringLiteral("Put a placeholder where the cursor stands"), parent);
  auto* menu = new QMenu(button);
  for (const Placeholder& placeholder : placeholders) {
    const QString text = QString::fromLatin1(placeholder.text);
    QAction* entry = menu->addAction(text + u'\t' + QString::fromLatin1(placeholder.meaning));
    entry->setObjectName(text);
    connect(entry, &QAction::triggered, this, [this, text] {
      m_parameters->insert(text);
      m_parameters->setFocus();
    });
  }
  button->setMenu(menu);
  return button;
}

QWidget* CConfigureDlg::offerButton(QWidget* parent) {
  QPushButton* button = sideButton(
      "offerCommand", QStringLiteral("&Default command"),
      QStringLiteral("Put the usual program and its parameters into both fields"), parent);
  connect(button, &QPushButton::clicked, this, [this] {
    m_command->setText(offeredExternalCommand());
    m_parameters->setText(offeredExternalParams());
  });
  return button;
}

void CConfigureDlg::chooseProgram() {
  const QString chosen =
      m_dialogs.openFile(this, {QStringLiteral("Choose the external program"),
                                QStringLiteral("Programs (*.exe *.bat);;All files (*)"),
                                m_command->text(),
                                {}});
  if (!chosen.isEmpty()) {
    m_command->setText(chosen);
  }
}

SettingFindings CConfigureDlg::check(const SplitSetup& setup) const {
  return checkExternalCommand(setup);
}

} // namespace folivex
