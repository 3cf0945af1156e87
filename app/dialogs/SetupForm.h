// SetupForm: groups of settings in one column or two, as many as there is room for.
#pragma once

#include "app/dialogs/SetupBinding.h"

#include <QScrollArea>

class QBoxLayout;

namespace folivex {

/// Shows and edits some settings of a setup that it has a copy of, and tells what is wrong with
/// them. Where the width is too small for two columns, the second one stands below the first; where
/// the height is too small, the area scrolls. It never scrolls both ways: that is no way to fill in
/// a form.
class SetupForm : public QScrollArea {
public:
  /// What is wrong with the settings, beside numbers that are none.
  using Check = std::function<SettingFindings(const SplitSetup& setup)>;
  SetupForm(Check check, QWidget* parent);

  void setSetup(const SplitSetup& setup);
  /// Sets the settings of this form, and no other.
  void take(SplitSetup& setup) const { m_binding.take(setup); }
  /// The setup as the controls stand now.
  SplitSetup shown() const;

  /// Has the controls stand as the settings ask for it, with what there is to say while one edits.
  void adapt();
  /// Tells everything that was found, and what is wrong in the fields themselves; puts the cursor
  /// into the first field with a problem. False when there is one.
  bool tellAll(const SettingFindings& findings);

  SetupBinding& binding() { return m_binding; }

  /// Takes the groups. A column that has something which can grow is as high as the area, else its
  /// groups stand at the top.
  void addColumn(const QList<QWidget*>& groups);
  /// Lines that tell problems have come or gone.
  void fitContent();
  /// Height that is missing for everything to be seen without scrolling; 0 when nothing is.
  int missingHeight() const;

  QSize sizeHint() const override; ///< everything seen without scrolling

protected:
  void resizeEvent(QResizeEvent* event) override;

  SplitSetup m_setup; ///< as shown last, with the settings that have no control here

private:
  SettingFindings withInput(const SettingFindings& findings) const;

  Check m_check;
  SetupBinding m_binding;
  QBoxLayout* m_columns;
};

} // namespace folivex
