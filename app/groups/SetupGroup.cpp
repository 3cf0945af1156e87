#include "app/groups/SetupGroup.h"

#include "widgets/Controls.h"

#include <QVBoxLayout>

namespace folivex {

namespace {

QString usualLabel() {
  return QStringLiteral("Prefix output filename:");
}

void setOrHide(QLabel* label, const QString& text) {
  label->setText(text);
  label->setVisible(!text.isEmpty());
}

} // namespace

SetupGroup::SetupGroup(const SetupGroupRow& row, const FormParts& parts, QWidget* parent)
    : Foldout(row.name, QString::fromLatin1(row.title), Rank::Section, parent), m_parts(parts),
      m_front(new QWidget(body())), m_kept(quietLabel("kept", body())),
      m_effect(named(new QLabel(this), "effect")) {
  setProperty("helpTopic", QString::fromLatin1(row.helpTopic));
  auto* column = new QVBoxLayout(body());
  constexpr QMargins inside(14, 2, 0, 4);
  column->setContentsMargins(inside);
  column->addWidget(m_front);
  column->addWidget(m_kept);
  m_effect->setTextFormat(Qt::PlainText);
  m_effect->setWordWrap(true);
  m_effect->setForegroundRole(QPalette::Link);
  m_effect->setContentsMargins(inside.left(), 0, 0, 0);
  layout()->addWidget(m_effect);
  setKept({});
  setEffect({});
  row.build(*this);
}

FormGrid SetupGroup::front() {
  return {m_front, m_parts, usualLabel()};
}

FormGrid SetupGroup::more(const char* name) {
  auto* more = new Foldout(name, QStringLiteral("More"), Rank::Part, body());
  static_cast<QVBoxLayout*>(body()->layout())->insertWidget(1, more);
  return {more->body(), m_parts, usualLabel()};
}

void SetupGroup::setEffect(const QString& text) {
  setOrHide(m_effect, text);
}

void SetupGroup::setKept(const QString& text) {
  setOrHide(m_kept, text.isEmpty() ? text : QStringLiteral("Kept, but not used now: %1").arg(text));
}

} // namespace folivex
