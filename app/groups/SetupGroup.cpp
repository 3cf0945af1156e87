#include "app/groups/SetupGroup.h"

#include "platform/Paths.h"
#include "widgets/Controls.h"
#include "widgets/Theme.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace folivex {

SetupGroup::SetupGroup(const char* name, const QString& title, const char* helpTopic,
                       GroupParts parts, QWidget* parent)
    : Foldout(name, title, Rank::Section, parent), m_parts(parts), m_front(new QWidget(body())),
      m_kept(quietLabel("kept")), m_effect(new QLabel(this)) {
  setProperty("helpTopic", QString::fromLatin1(helpTopic));
  auto* column = new QVBoxLayout(body());
  constexpr QMargins inside(14, 2, 0, 4);
  column->setContentsMargins(inside);
  column->addWidget(m_front);
  column->addWidget(m_kept);
  named(m_effect, "effect");
  m_effect->setTextFormat(Qt::PlainText);
  m_effect->setWordWrap(true);
  m_effect->setForegroundRole(QPalette::Link);
  m_effect->setContentsMargins(inside.left(), 0, 0, 0);
  m_effect->hide();
  m_kept->hide();
  layout()->addWidget(m_effect);
}

int SetupGroup::labelWidth() const {
  return fontMetrics().horizontalAdvance(QStringLiteral("Prefix output filename:")) + 2;
}

FormGrid SetupGroup::frontGrid() {
  return {m_front, m_parts.binding, labelWidth(), title()};
}

FormGrid SetupGroup::moreGrid(const char* name, const FormGrid& front) {
  m_more = new Foldout(name, QStringLiteral("More"), Rank::Part, body());
  static_cast<QVBoxLayout*>(body()->layout())->insertWidget(1, m_more);
  QWidget::setTabOrder(front.lastStop(), m_more->title());
  return {m_more->body(), m_parts.binding, labelWidth(), m_more->title()};
}

QComboBox* SetupGroup::list(QString SplitSetup::*setting) {
  auto* made = new QComboBox(this);
  made->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  made->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  m_parts.binding.bind(setting, made);
  return made;
}

QLabel* SetupGroup::quietLabel(const char* name, const char* text) {
  auto* label = named(new QLabel(QString::fromLatin1(text), this), name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  setTone(label, Tone::Quiet);
  return label;
}

void SetupGroup::setEffect(const QString& text) {
  m_effect->setText(text);
  m_effect->setVisible(!text.isEmpty());
}

void SetupGroup::setKept(const QString& text) {
  m_kept->setText(text);
  m_kept->setVisible(!text.isEmpty());
}

QLineEdit* SetupGroup::textField(QString SplitSetup::*setting, SetupBinding::Shown shown) {
  QLineEdit* field = m_parts.binding.field(setting, this, shown);
  field->setAcceptDrops(false);
  return field;
}

QLineEdit* SetupGroup::wholeField(int SplitSetup::*setting, WholeLimits limits) {
  QLineEdit* field = m_parts.binding.numberField(setting, this, limits);
  constexpr int digitsLess = 3; // of what a range of positions takes
  field->setFixedWidth(field->minimumWidth() - field->fontMetrics().horizontalAdvance(
                                                   QString(digitsLess, QLatin1Char('9'))));
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
  setTone(label, Tone::Quiet);
  if (constexpr int shortText = 12; text.size() > shortText) {
    label->setWordWrap(true);
    label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  }
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
