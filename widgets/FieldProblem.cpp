#include "widgets/FieldProblem.h"

#include "widgets/Theme.h"

#include <QLabel>

namespace folivex {

FieldProblem::FieldProblem(QWidget* field)
    : m_field(field), m_label(new QLabel(field->parentWidget())) {
  m_label->setObjectName(field->objectName() + QStringLiteral("Problem"));
  m_label->setTextFormat(Qt::PlainText);
  m_label->setWordWrap(true);
  m_label->setVisible(false);
}

void FieldProblem::tell(const QString& text, Weight weight) {
  m_label->setText(text);
  m_label->setVisible(!text.isEmpty());
  setTone(m_label, weight == Weight::Problem ? Tone::Problem : Tone::Hint);
  m_field->setAccessibleDescription(text);
  m_field->setProperty("problem", !text.isEmpty() && weight == Weight::Problem);
}

} // namespace folivex
