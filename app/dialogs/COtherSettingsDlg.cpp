#include "app/dialogs/COtherSettingsDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupChecks.h"
#include "widgets/Controls.h"

#include <QCheckBox>
#include <QLayout>
#include <QLineEdit>

namespace folivex {

COtherSettingsDlg::COtherSettingsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("otherSettings", "Other settings", "other-settings", checkOtherSettings, dialogs,
                  parent) {
  auto* controls = new QWidget(this);
  QCheckBox* removeFiles = m_binding.box(
      &SplitSetup::otherSettingsRemoveFiles,
      QStringLiteral("&Remove files from output folder before processing."), controls);
  QLineEdit* removeText = m_binding.field(&SplitSetup::otherSettingsRemoveText, controls);
  removeText->setPlaceholderText(QStringLiteral("e.g.  Ltd|Inc."));
  FormGrid grid(controls, m_binding);
  grid.wide({removeFiles});
  grid.wide({labelFor(removeText, QStringLiteral("Remove &text from output filenames, use | for "
                                                 "multiple"))});
  grid.wide({removeText});
  grid.wide({new QLabel(QStringLiteral("* NOTE: this is case sensitive"), controls)});
  controls->layout()->setContentsMargins(0, 0, 0, 0);
  constexpr int startWidth = 520;
  finish({controls}, {}, startWidth);
}

} // namespace folivex
