#include "app/dialogs/FormGrid.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>

namespace folivex {

namespace {

QHBoxLayout* sideBySide(std::initializer_list<QWidget*> controls) {
  auto* line = new QHBoxLayout;
  bool stretches = false;
  for (QWidget* control : controls) {
    const bool wide = control->sizePolicy().expandingDirections().testFlag(Qt::Horizontal);
    line->addWidget(control, wide ? 1 : 0);
    stretches = stretches || wide;
  }
  if (!stretches) {
    line->addStretch(1);
  }
  return line;
}

} // namespace

FormGrid::FormGrid(QWidget* owner, SetupBinding& binding)
    : m_grid(new QGridLayout(owner)), m_binding(binding) {
  m_grid->setColumnStretch(1, 1);
}

FormGrid::FormGrid(QWidget* owner, SetupBinding& binding, int labelWidth, QWidget* after)
    : FormGrid(owner, binding) {
  m_labelWidth = labelWidth;
  m_lastStop = after;
  m_grid->setContentsMargins(0, 0, 0, 0);
}

void FormGrid::row(const QString& label, std::initializer_list<QWidget*> controls) {
  auto* text = new QLabel(label);
  QWidget* first = *controls.begin();
  text->setBuddy(first);
  text->setToolTip(first->toolTip());
  m_binding.follow(first->objectName(), text);
  followBuddies(controls);
  const bool isTall = qobject_cast<QPlainTextEdit*>(first) != nullptr;
  if (m_labelWidth > 0) {
    text->setWordWrap(true);
    text->setFixedWidth(m_labelWidth);
  }
  m_grid->addWidget(text, m_row, 0, isTall ? Qt::AlignTop : Qt::Alignment());
  m_grid->addLayout(sideBySide(controls), m_row++, 1);
  tabThrough(controls);
  problemLines(controls, 1);
  keepTogether(controls, text);
}

void FormGrid::wide(std::initializer_list<QWidget*> controls) {
  followBuddies(controls);
  m_grid->addLayout(sideBySide(controls), m_row++, 0, 1, 2);
  tabThrough(controls);
  problemLines(controls, 0);
  keepTogether(controls, nullptr);
}

void FormGrid::sentence(const QString& key, QLabel* text) {
  text->setWordWrap(true);
  m_grid->addWidget(text, m_row++, 0, 1, 2);
  m_binding.addLine(key.isEmpty() ? QStringList() : QStringList{key}, {text});
}

void FormGrid::keepTogether(std::initializer_list<QWidget*> controls, QWidget* label) {
  QList<QWidget*> line = controls;
  QStringList keys;
  for (QWidget* control : controls) {
    if (m_binding.problemLine(control) != nullptr) {
      keys += control->objectName();
    }
  }
  if (label != nullptr) {
    line += label;
  }
  m_binding.addLine(keys, line);
}

void FormGrid::tabThrough(std::initializer_list<QWidget*> controls) {
  for (QWidget* control : controls) {
    if (control->focusPolicy() == Qt::NoFocus) {
      continue;
    }
    if (m_lastStop != nullptr) {
      QWidget::setTabOrder(m_lastStop, control);
    }
    m_lastStop = control;
  }
}

void FormGrid::followBuddies(std::initializer_list<QWidget*> controls) {
  for (QWidget* control : controls) {
    const auto* text = qobject_cast<const QLabel*>(control);
    if (text != nullptr && text->buddy() != nullptr) {
      m_binding.follow(text->buddy()->objectName(), control);
    }
  }
}

void FormGrid::problemLines(std::initializer_list<QWidget*> controls, int column) {
  for (const QWidget* control : controls) {
    if (QLabel* line = m_binding.problemLine(control)) {
      m_grid->addWidget(line, m_row++, column, 1, column == 0 ? 2 : 1);
    }
  }
}

void addInsertion(QPushButton* button, QLineEdit* field, const char* text, const char* meaning) {
  if (button->menu() == nullptr) {
    button->setMenu(new QMenu(button));
  }
  const QString inserted = QString::fromLatin1(text);
  QAction* entry = button->menu()->addAction(inserted + u'\t' + QString::fromLatin1(meaning));
  entry->setObjectName(inserted);
  QObject::connect(entry, &QAction::triggered, field, [field, inserted] {
    field->insert(inserted);
    field->setFocus();
  });
}

void alignLabels(const QList<QWidget*>& owners) {
  int width = 0;
  for (QWidget* owner : owners) {
    const auto* grid = static_cast<QGridLayout*>(owner->layout());
    for (int row = 0; row < grid->rowCount(); ++row) {
      QLayoutItem* label = grid->itemAtPosition(row, 0);
      if (label != nullptr && label != grid->itemAtPosition(row, 1)) {
        width = std::max(width, label->sizeHint().width());
      }
    }
  }
  for (QWidget* owner : owners) {
    static_cast<QGridLayout*>(owner->layout())->setColumnMinimumWidth(0, width);
  }
}

int heightForContent(QWidget* owner) {
  // A line that is shown tells the layout above it only when events are handled next.
  for (QWidget* inner : owner->findChildren<QWidget*>()) {
    if (inner->layout() != nullptr) {
      inner->layout()->invalidate();
      inner->updateGeometry();
    }
  }
  owner->layout()->invalidate();
  const int wrapped = owner->layout()->totalHeightForWidth(owner->width());
  return std::max(wrapped, owner->layout()->totalSizeHint().height());
}

} // namespace folivex
