// SetupBinding: ties settings to the controls that show and edit them.
#pragma once

#include "app/dialogs/FieldChecks.h"
#include "app/dialogs/SettingFinding.h"
#include "engine/setup/SplitSetup.h"
#include "widgets/FieldProblem.h"

#include <QHash>
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

struct SetupField;

/// The table of a window's settings. bind() gives the control the setting's key as its object name,
/// its tooltip, and a line for problems. The controls belong to their window, which must live as
/// long as this is used.
class SetupBinding {
public:
  SetupBinding() = default;
  SetupBinding(const SetupBinding&) = delete;
  SetupBinding& operator=(const SetupBinding&) = delete;

  void bind(bool SplitSetup::*setting, QCheckBox* box);
  /// What is seen of a text that is too long for its field: of a path, the end tells more.
  enum class Shown { Front, End };
  void bind(QString SplitSetup::*setting, QLineEdit* field, Shown shown = Shown::Front);
  /// A text that is not in the list shows as its first entry.
  void bind(QString SplitSetup::*setting, QComboBox* list);
  void bind(QString SplitSetup::*setting, QPlainTextEdit* field);
  void bind(int SplitSetup::*setting, QLineEdit* field, WholeLimits limits = {});
  void bind(double SplitSetup::*setting, QLineEdit* field);

  /// Controls that are made here, for a text, a number of the usual width and a yes or no.
  QLineEdit* field(QString SplitSetup::*setting, QWidget* parent, Shown shown = Shown::Front);
  QLineEdit* numberField(int SplitSetup::*setting, QWidget* parent, WholeLimits limits = {});
  QCheckBox* box(bool SplitSetup::*setting, const QString& label, QWidget* parent);

  /// Another control that is enabled and disabled with a setting (a button that fills its field).
  void follow(const QString& key, QWidget* companion);

  void show(const SplitSetup& setup);
  /// Sets what is bound, and nothing else. A number that is none leaves the setting as it was.
  void take(SplitSetup& setup) const;

  /// What stands in the fields of numbers and is none; fields that are disabled do not count.
  SettingFindings inputFindings() const;

  /// Every control of these settings is disabled, all others are enabled.
  void disable(const QSet<QString>& keys);

  /// Widgets that stand in one line with the controls of these settings.
  void addLine(const QStringList& keys, const QList<QWidget*>& widgets);
  /// Lines whose settings are all among these are not seen.
  void hideLines(const QSet<QString>& keys);

  /// What a person calls a setting: the text of its box or label, without a letter for the Alt key.
  QString label(const QString& key) const;
  /// What stands in a setting's control, for a person to read; empty for a box, and for what is not
  /// to be read.
  QString shownValue(const QString& key) const;

  enum class Telling {
    All,    ///< everything that was found
    Editing ///< while the person edits: hints, and problems that had been told and still hold
  };
  void tell(const SettingFindings& findings, Telling telling);
  /// Puts the cursor into the first field, in the order of bind(), that has a problem.
  void focusFirst(const SettingFindings& findings) const;

  QStringList keys() const;
  QWidget* control(const QString& key) const;
  /// The line for problems of a control, null when the control is not bound.
  QLabel* problemLine(const QWidget* control) const;

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
    bool tellsProblem = false;
  };

  struct Line {
    QSet<QString> keys;
    QList<QWidget*> widgets;
  };

  Row& add(const SetupField& setting, QWidget* control);
  void edited(const QWidget* control);

  std::vector<Row> m_rows;
  std::vector<Line> m_lines;
  QHash<QString, QList<QWidget*>> m_companions;
  bool m_isShowing = false;
};

} // namespace folivex
