// SetupDialog: what the dialogs of settings have in common.
#pragma once

#include "app/dialogs/SetupBinding.h"

#include <QDialog>

class QPushButton;

namespace folivex {

class Dialogs;
class FormArea;

/// Shows and edits some settings of a setup that it has a copy of. OK closes it only when nothing
/// is wrong; the caller then takes the settings. Escape and Cancel leave everything as it was.
class SetupDialog : public QDialog {
public:
  void setSetup(const SplitSetup& setup);
  /// Sets the settings of this dialog, and no other.
  void take(SplitSetup& setup) const { m_binding.take(setup); }
  const SetupBinding& binding() const { return m_binding; }

  /// Help on this dialog is asked for: F1, or the button. Without it the button is disabled.
  std::function<void(const QString& topic)> onHelp;

  void accept() override; ///< OK

protected:
  /// What is wrong with the settings of a dialog, beside numbers that are none.
  using Check = SettingFindings (*)(const SplitSetup& setup);

  /// `dialogs` must outlive the dialog.
  SetupDialog(const char* name, const char* title, const char* helpTopic, Check check,
              Dialogs& dialogs, QWidget* parent);

  /// To be called at the end of a constructor: columns of groups (see FormArea) with the row of
  /// buttons below. `startWidth` is in pixels.
  void finish(const QList<QWidget*>& left, const QList<QWidget*>& right, int startWidth);

  /// Settings whose controls are disabled.
  virtual QSet<QString> idle(const SplitSetup& setup) const;

  /// The setup as the controls stand now.
  SplitSetup shown() const;
  /// Tells everything that is wrong with `setup` at its field; false when there is a problem.
  bool tellProblems(const SplitSetup& setup);

  SetupBinding m_binding;
  Dialogs& m_dialogs;

  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

private:
  void edited();
  void fit();
  SettingFindings findings(const SplitSetup& setup) const;

  QString m_helpTopic;
  Check m_check;
  SplitSetup m_setup;
  FormArea* m_form = nullptr;
  QPushButton* m_helpButton = nullptr;
};

} // namespace folivex
