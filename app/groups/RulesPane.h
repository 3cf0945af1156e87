// RulesPane: the settings of a split, in the order in which one thinks of it.
#pragma once

#include "app/dialogs/SetupChecks.h"
#include "app/dialogs/SetupForm.h"

#include <array>

namespace folivex {

class Dialogs;
class Foldout;
class SetupGroup;
class WindowMemory;
struct DialogGroupRow;

/// A part of the pane that belongs to one question. The last four open dialogs.
enum class RulesPart { Source, Words, Pages, Names, Outputs, Mail, Reports, Other, Command };

/// One column. Lines of settings that mean nothing beside the others are not seen, and a value that
/// is kept in one of them is told; groups fold, and are remembered as they were left.
class RulesPane : public SetupForm {
public:
  /// Both must outlive the pane.
  RulesPane(Dialogs& dialogs, WindowMemory& memory, QWidget* parent);

  /// Shows every setting, those of the dialogs included in what is checked.
  void setSetup(const SplitSetup& setup);

  /// Tells what is wrong at its field, and puts the cursor into the first such field. `more` is
  /// what only the caller can know. True when nothing is wrong.
  bool check(SetupPurpose purpose, const SettingFindings& more = {});
  /// Only what was typed where a number must stand.
  bool checkInput() { return tellAll({}); }

  /// What the settings of a part (Source to Outputs) do to the file that is open: "12 documents
  /// begin here". Empty: not known.
  void setEffect(RulesPart part, const QString& text);

  /// A setting was edited. `label` is what a person calls it, `field` its key when it is a text
  /// that is being typed, empty for a choice. May be empty, as the other.
  struct Edit {
    const SplitSetup& before;
    const SplitSetup& after;
    QString label;
    QString field;
  };
  std::function<void(const Edit&)> onEdited;
  /// The dialog of a part (Mail to Command) is asked for.
  std::function<void(RulesPart)> onDialogWanted;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override; ///< wide enough for every line

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  QWidget* dialogGroup(const DialogGroupRow& row);
  void rememberFolds(WindowMemory& memory);
  void edited(const QString& key);
  void adaptPane();
  void nameByBookmarks(bool byBookmarks);
  void tellHeld(const QSet<QString>& idle);

  bool m_isAdapting = false;
  int m_leastWidth = 0;                ///< of the content, all unfolded
  std::array<SetupGroup*, 5> m_groups; ///< by RulesPart
  QList<Foldout*> m_foldouts;          ///< the groups and their parts
  QString m_methodForWords;            ///< of names, while bookmarks name the outputs
};

} // namespace folivex
