#include "app/groups/SetupGroup.h"

#include "platform/Paths.h"
#include "widgets/Controls.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QLineEdit>

namespace folivex {

SetupGroup::SetupGroup(const char* name, const QString& title, const char* helpTopic,
                       GroupParts parts, QWidget* parent)
    : QGroupBox(title, parent), m_parts(parts) {
  setObjectName(QString::fromLatin1(name));
  setProperty("helpTopic", QString::fromLatin1(helpTopic));
}

QLineEdit* SetupGroup::textField(QString SplitSetup::*setting, SetupBinding::Shown shown) {
  QLineEdit* field = m_parts.binding.field(setting, this, shown);
  field->setAcceptDrops(false);
  return field;
}

QLineEdit* SetupGroup::wholeField(int SplitSetup::*setting, WholeLimits limits) {
  QLineEdit* field = m_parts.binding.numberField(setting, this, limits);
  field->setAcceptDrops(false);
  return field;
}

QLineEdit* SetupGroup::positionField(QString SplitSetup::*setting) {
  QLineEdit* field = numberField(this);
  field->setAcceptDrops(false);
  m_parts.binding.bind(setting, field);
  return field;
}

QCheckBox* SetupGroup::box(bool SplitSetup::*setting, const QString& label) {
  return m_parts.binding.box(setting, label, this);
}

QLabel* SetupGroup::between(const QString& text, QWidget* of) {
  QLabel* label = labelFor(of, text);
  label->setToolTip(of->toolTip());
  return label;
}

QPushButton* SetupGroup::browseButton(const char* name, const QString& text, const QString& toolTip,
                                      QLineEdit* field, const char* memoryKey,
                                      std::function<QString(const QString& start)> choose) {
  const QString key = QString::fromLatin1(memoryKey);
  QPushButton* button = folivex::browseButton(
      name, text, toolTip, field, [this, key, choose = std::move(choose)](const QString& now) {
        const QString chosen = choose(now.isEmpty() ? m_parts.memory.text(key) : now);
        if (!chosen.isEmpty()) {
          m_parts.memory.setText(key,
                                 QFileInfo(chosen).isDir() ? chosen : platform::folderOf(chosen));
        }
        return chosen;
      });
  m_parts.binding.follow(field->objectName(), button);
  return button;
}

} // namespace folivex
