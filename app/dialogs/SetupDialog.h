// SetupDialog: what the dialogs of settings have in common.
#pragma once

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SetupForm.h"

#include <QDialog>

namespace folivex {

/// OK closes it only when nothing is wrong; the caller then takes the settings. Escape and Cancel
/// leave everything as it was.
class SetupDialog : public QDialog {
public:
  void setSetup(const SplitSetup& setup);
  /// Sets the settings of this dialog, and no other.
  void take(SplitSetup& setup) const { m_form->take(setup); }

  /// Help on this dialog is asked for by its button, which is disabled without it.
  std::function<void(const QString& topic)> onHelp;

  void accept() override; ///< OK

protected:
  using Check = SettingFindings (*)(const SplitSetup& setup);

  /// `dialogs` must outlive the dialog.
  SetupDialog(const char* name, const char* title, const char* helpTopic, Check check,
              Dialogs& dialogs, QWidget* parent);

  /// Begins a group below the one before; without a title it has no frame. Its labels are as wide
  /// as `usualLabel`.
  FormGrid group(const char* title, const char* usualLabel);
  /// The groups from here on stand beside those before.
  void nextColumn();
  /// To be called at the end of a constructor. `startWidth` is in pixels.
  void finish(int startWidth);

  /// The setup as the controls stand now.
  SplitSetup shown() const { return m_form->shown(); }
  /// Tells everything that is wrong with `setup` at its field; false when there is a problem.
  bool tellProblems(const SplitSetup& setup);

  void showEvent(QShowEvent* event) override;

private:
  void adapt();
  void fit();

  Check m_check;
  Dialogs& m_dialogs;
  SetupForm* m_form;
  QList<QWidget*> m_groups; ///< of the last column
  QPushButton* m_helpButton = nullptr;
};

} // namespace folivex
