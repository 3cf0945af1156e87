#include "app/dialogs/COtherSettingsDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupChecks.h"

#include <QCheckBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>

namespace folivex {

COtherSettingsDlg::COtherSettingsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("otherSettings", QStringLiteral("Other settings"),
                  QStringLiteral("other-settings"), dialogs, parent) {
  auto* controls = new QWidget(this);
  auto* removeFiles = new QCheckBox(
      QStringLiteral("&Remove files from output folder before processing."), controls);
  auto* removeText = new QLineEdit(controls);
  removeText->setPlaceholderText(QStringLiteral("e.g.  Ltd|Inc."));
  m_binding.bind(&SplitSetup::otherSettingsRemoveFiles, removeFiles);
  m_binding.bind(&SplitSetup::otherSettingsRemoveText, removeText);
  auto* label =
      new QLabel(QStringLiteral("Remove &text from output filenames, use | for multiple"));
  label->setBuddy(removeText);
  FormGrid grid(controls, m_binding);
  grid.wide({removeFiles});
  grid.wide({label});
  grid.wide({removeText});
  grid.wide({new QLabel(QStringLiteral("* NOTE: this is case sensitive"), controls)});

  controls->layout()->setContentsMargins(0, 0, 0, 0);
  constexpr int startWidth = 520;
  finish({controls}, {}, startWidth);
}

SettingFindings COtherSettingsDlg::check(const SplitSetup& setup) const {
  return checkOtherSettings(setup);
}

} // namespace folivex
