// FieldProblem: wrong input, told at the field that it stands in.
#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace folivex {

/// The line below a field that says what is wrong with its content, or worth a thought. It takes no
/// room while there is nothing to say. The same text is the field's accessible description, and the
/// field carries the dynamic property "problem" (true or false).
class FieldProblem {
public:
  /// Makes the line as a child of the field's parent; the caller puts label() into a layout, under
  /// the field.
  explicit FieldProblem(QWidget* field);

  QLabel* label() const { return m_label; }

  enum class Weight { Problem, Hint };
  /// Shows what is wrong, in plain words; empty: nothing is. A hint looks milder.
  void tell(const QString& text, Weight weight = Weight::Problem);

private:
  QWidget* m_field;
  QLabel* m_label;
};

} // namespace folivex
