// SetupBinding: ties settings to the controls that show and edit them.
#pragma once

#include "app/dialogs/FieldChecks.h"
#include "engine/setup/SettingFinding.h"
#include "engine/setup/SplitSetup.h"
#include "widgets/FieldProblem.h"

#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;

namespace folivex {

/// What is seen of a text that is too long for its field: of a path, the end tells more; of a
/// password, nothing is seen. The field of a position is as wide as those are.
enum class Shown { Front, End, Never, Position };

/// The table of a window's settings. It makes the control of each in `line`, a widget of its own,
/// with the setting's key as object name, its tooltip, and a line for problems. The controls belong
/// to their window, which must live as long as this is used.
class SetupBinding {
public:
  SetupBinding() = default;
  SetupBinding(const SetupBinding&) = delete;
  SetupBinding& operator=(const SetupBinding&) = delete;

  QCheckBox* box(bool SplitSetup::*setting, const QString& label, QWidget* line);
  QLineEdit* text(QString SplitSetup::*setting, Shown shown, QWidget* line);
  QLineEdit* whole(int SplitSetup::*setting, WholeLimits limits, QWidget* line);
  QLineEdit* factor(double SplitSetup::*setting, QWidget* line);
  /// A text that is not among `entries` shows as their first.
  QComboBox* list(QString SplitSetup::*setting, const QStringList& entries, QWidget* line);
  QPlainTextEdit* longText(QString SplitSetup::*setting, QWidget* line);

  /// The line that tells what is wrong with the setting whose control was made last.
  QLabel* problemLine() const;
  /// Belongs to the setting whose control was made last: is enabled, disabled, seen and hidden with
  /// it.
  void follow(QWidget* companion);
  /// A text that says what the settings come to.
  using Words = QString (*)(const SplitSetup& setup);
  void say(QLabel* label, Words words);

  void show(const SplitSetup& setup);
  /// Sets what is bound, and nothing else. A number that is none leaves the setting as it was.
  void take(SplitSetup& setup) const;
  /// Disables the controls of these settings, enables all others, and has the words said of
  /// `setup`.
  void adapt(const SplitSetup& setup, const QSet<QString>& idle);
  /// Lines whose settings are all among these are not seen.
  void hideLines(const QSet<QString>& keys);

  /// What stands in the fields of numbers and is none; fields that are disabled do not count.
  SettingFindings inputFindings() const;
  enum class Telling {
    All,    ///< everything that was found
    Editing ///< while the person edits: hints, and problems that had been told and still hold
  };
  void tell(const SettingFindings& findings, Telling telling);
  /// Puts the cursor into the first field, in the order of their making, whose problem is told.
  void focusFirstProblem() const;

  /// A setting as a person reads it: what it is called, and its value. For a box the name alone, so
  /// for what is not to be read.
  QString said(const QString& key) const;
  /// What a person calls a setting.
  QString label(const QString& key) const;

  QStringList keys() const;
  QWidget* control(const QString& key) const; ///< null when there is none

  /// The person, or the program, changed the control of this setting; not called by show().
  std::function<void(const QString& key)> onEdited;

private:
  struct Row {
    QString key;
    QWidget* control;
    std::unique_ptr<FieldProblem> problem;
    std::function<void(const SplitSetup&)> show;
    std::function<void(SplitSetup&)> take;
    std::function<QString()> inputProblem; ///< may be empty
    QList<QWidget*> companions;
    bool tellsProblem = false;
  };

  template <typename Value, typename Control, typename Signal>
  Row& add(Value SplitSetup::*setting, Control* control, Signal changed);

  std::vector<Row> m_rows;
  std::vector<std::pair<QLabel*, Words>> m_words;
  bool m_isShowing = false;
};

} // namespace folivex
