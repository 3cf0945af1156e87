// SetupPanel: the settings of the main window, in the order in which one thinks of a split.
#pragma once

#include "app/dialogs/FormArea.h"
#include "app/dialogs/SetupChecks.h"
#include "app/groups/SetupGroup.h"

class QPushButton;

namespace folivex {

class NamesGroup;
class SearchGroup;

class SetupPanel : public FormArea {
public:
  SetupPanel(Dialogs& dialogs, WindowMemory& memory, QWidget* parent);

  /// Shows every setting, those of the dialogs included in what is checked.
  void setSetup(const SplitSetup& setup);
  /// Sets the settings of this panel, and no other.
  void take(SplitSetup& setup) const { m_binding.take(setup); }

  /// Tells what is wrong at its field, and puts the cursor into the first such field. `more` is
  /// what only the caller can know. True when nothing is wrong.
  bool check(SetupPurpose purpose, const SettingFindings& more = {});
  /// Only what was typed where a number must stand.
  bool checkInput();

  QPushButton* viewPageButton() const;
  const SetupBinding& binding() const { return m_binding; }

  QSize sizeHint() const override; ///< with room for a few lines that tell problems

private:
  SplitSetup shown() const;
  void adapt();
  bool tell(const SettingFindings& findings);

  SetupBinding m_binding;
  SplitSetup m_setup; ///< as shown last, with the settings that have no control here
  SearchGroup* m_search = nullptr;
  NamesGroup* m_names = nullptr;
};

} // namespace folivex
