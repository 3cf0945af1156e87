// SetupGroup: one group of settings in the rules.
#pragma once

#include "app/dialogs/FormGrid.h"
#include "widgets/Foldout.h"

#include <array>

namespace folivex {

class SetupGroup;

struct SetupGroupRow {
  const char* name; ///< object name
  const char* title;
  const char* helpTopic; ///< what F1 opens inside the group
  void (*build)(SetupGroup& group);
};

/// In the order in which one thinks of a split: which file, which words, how pages make a document,
/// how outputs are named, where they go.
const std::array<SetupGroupRow, 5>& setupGroups();

/// Rows in front, and the rarer ones below them in a part of their own that unfolds. Its last line,
/// seen when it is folded, too, says what comes of the settings.
class SetupGroup : public Foldout {
public:
  SetupGroup(const SetupGroupRow& row, const FormParts& parts, QWidget* parent);

  FormGrid front();
  /// To be called once, after the rows in front.
  FormGrid more(const char* name);

  /// What the settings do to the file that is open; empty: not known.
  void setEffect(const QString& text);
  /// Values of settings that mean nothing now, and are not seen; empty: none.
  void setKept(const QString& text);

private:
  FormParts m_parts;
  QWidget* m_front;
  QLabel* m_kept;
  QLabel* m_effect;
};

} // namespace folivex
