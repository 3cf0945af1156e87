// FormGrid: lines of labels and controls, laid out alike in every window.
#pragma once

#include "app/dialogs/SetupBinding.h"

#include <vector>

class QGridLayout;
class QLabel;
class QPushButton;

namespace folivex {

class Dialogs;
class WindowMemory;

/// What every form is made with. All of it outlives the controls.
struct FormParts {
  SetupBinding& binding;
  Dialogs& dialogs;
  WindowMemory* memory = nullptr; ///< of folders; without it choosers begin at what stands there
  bool isNarrow = false;          ///< notes beside a control are wrapped
};

/// A button that fills the field before it with a path.
struct Browse {
  enum class For { File, NewFile, Folder };
  const char* name;    ///< object name
  const char* toolTip; ///< what the chooser is called, too, unless it has a title
  For what = For::File;
  const char* filter = "";
  const char* text = "&Browse...";
  const char* title = nullptr;
  const char* offered = "";        ///< where the field is empty
  const char* memoryKey = nullptr; ///< of the folder chosen last
};

/// What a menu puts where the cursor of a field stands.
struct Insertion {
  const char* text;
  const char* meaning;
};

/// Fills a grid of two columns, labels and what belongs to them, line by line. Each call adds to
/// the line that was begun last, in the order that the Tab key takes. Under each line are those for
/// the problems of its settings, which take no room while there is nothing to say. What stands in a
/// line is enabled, disabled, seen and hidden with the setting before it, or with the first one.
class FormGrid {
public:
  /// A layout for `owner`, which gets it. Labels are as wide as this one; longer ones are wrapped.
  FormGrid(QWidget* owner, const FormParts& parts, const QString& usualLabel);

  /// Begins a line whose label belongs to its first setting.
  FormGrid& row(const char* label);
  /// Begins a line over both columns.
  FormGrid& wide();

  FormGrid& box(bool SplitSetup::*setting, const char* label);
  FormGrid& text(QString SplitSetup::*setting, Shown shown = Shown::Front);
  FormGrid& whole(int SplitSetup::*setting, WholeLimits limits = {});
  FormGrid& factor(double SplitSetup::*setting);
  FormGrid& list(QString SplitSetup::*setting, const QStringList& entries);
  FormGrid& longText(QString SplitSetup::*setting);

  /// What the setting added last is called where its labels alone do not tell it apart.
  FormGrid& called(const char* name);
  /// What a field shows while it is empty.
  FormGrid& whenEmpty(const char* text);

  /// The label of the setting that is added next.
  FormGrid& before(const char* label);
  /// A text that explains the line.
  FormGrid& note(const QString& text);
  FormGrid& browse(const Browse& how);
  FormGrid& insertions(const char* name, const char* text, const char* toolTip,
                       const std::vector<Insertion>& all);
  /// Any other control, which follows the setting before it.
  FormGrid& add(QWidget* control);

  /// A line of its own that explains the setting above it, and goes with that.
  FormGrid& hint(const char* name, const char* text);
  /// A line of its own that says what the settings come to.
  FormGrid& say(const char* name, SetupBinding::Words words);

  /// The control of the setting added last.
  template <typename Control> Control* last() const { return static_cast<Control*>(m_last); }
  QWidget* line() const { return m_line; } ///< the parent of what stands in it

private:
  void begin(int column);
  void place(QWidget* control);
  FormGrid& settle(QWidget* control);
  void head(QLabel*& label);
  QLabel* sentence(const char* name);
  QString chosen(const Browse& how, const QString& now) const;

  QWidget* m_owner;
  QGridLayout* m_grid;
  FormParts m_parts;
  int m_labelWidth;
  int m_row = 0;
  int m_column = 0;
  QWidget* m_line = nullptr;
  QWidget* m_last = nullptr;
  QLabel* m_label = nullptr;  ///< of the line, while it belongs to no setting
  QLabel* m_before = nullptr; ///< of the setting to come
};

/// A sentence that explains something.
QLabel* quietLabel(const char* name, QWidget* parent);

} // namespace folivex
