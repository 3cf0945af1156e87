#include "app/groups/SetupGroup.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

namespace folivex {

SetupGroup::SetupGroup(const char* name, const QString& title, const char* helpTopic,
                       GroupParts parts, QWidget* parent)
    : QGroupBox(title, parent), m_parts(parts) {
  setObjectName(QString::fromLatin1(name));
  setProperty("helpTopic", QString::fromLatin1(helpTopic));
}

QLineEdit* SetupGroup::textField(QString SplitSetup::*setting, SetupBinding::Shown shown) {
  auto* field = new QLineEdit(this);
  field->setAcceptDrops(false);
  m_parts.binding.bind(setting, field, shown);
  return field;
}

QLineEdit* SetupGroup::wholeField(int SplitSetup::*setting, WholeLimits limits) {
  QLineEdit* field = numberField(this);
  field->setAcceptDrops(false);
  m_parts.binding.bind(setting, field, limits);
  return field;
}

QLineEdit* SetupGroup::positionField(QString SplitSetup::*setting) {
  QLineEdit* field = numberField(this);
  field->setAcceptDrops(false);
  m_parts.binding.bind(setting, field);
  return field;
}

QCheckBox* SetupGroup::box(bool SplitSetup::*setting, const QString& label) {
  auto* made = new QCheckBox(label, this);
  m_parts.binding.bind(setting, made);
  return made;
}

QLabel* SetupGroup::between(const QString& text, QWidget* of) {
  auto* label = new QLabel(text, this);
  if (of != nullptr) {
    label->setBuddy(of);
    label->setToolTip(of->toolTip());
  }
  return label;
}

} // namespace folivex
