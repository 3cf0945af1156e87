#include "app/dialogs/FormGrid.h"

#include "platform/Paths.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/Tones.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

namespace folivex {

namespace {

bool isWide(const QWidget* control) {
  return control->sizePolicy().expandingDirections().testFlag(Qt::Horizontal);
}

} // namespace

QLabel* quietLabel(const char* name, QWidget* parent) {
  auto* label = named(new QLabel(parent), name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  setTone(label, Tone::Quiet);
  return label;
}

FormGrid::FormGrid(QWidget* owner, const FormParts& parts, const QString& usualLabel)
    : m_owner(owner), m_grid(new QGridLayout(owner)), m_parts(parts),
      m_labelWidth(owner->fontMetrics().horizontalAdvance(usualLabel) + 2) {
  m_grid->setColumnStretch(1, 1);
  if (qobject_cast<QGroupBox*>(owner) == nullptr) {
    m_grid->setContentsMargins(0, 0, 0, 0);
  }
}

void FormGrid::begin(int column) {
  m_line = new QWidget(m_owner);
  auto* layout = new QHBoxLayout(m_line);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch(); // gets nothing beside a control that is wide
  m_grid->addWidget(m_line, m_row++, column, 1, 2 - column);
  m_column = column;
  m_last = nullptr;
  m_label = nullptr;
}

FormGrid& FormGrid::row(const char* label) {
  begin(1);
  m_label = new QLabel(QString::fromLatin1(label), m_owner);
  m_label->setWordWrap(true);
  m_label->setFixedWidth(m_labelWidth);
  m_grid->addWidget(m_label, m_row - 1, 0);
  return *this;
}

FormGrid& FormGrid::wide() {
  begin(0);
  return *this;
}

void FormGrid::place(QWidget* control) {
  auto* layout = static_cast<QHBoxLayout*>(m_line->layout());
  layout->insertWidget(layout->count() - 1, control, isWide(control) ? 1 : 0);
}

/// Ties a label to the setting added last, which may stand elsewhere than readers of the screen
/// look.
void FormGrid::head(QLabel*& label) {
  if (label != nullptr) {
    label->setBuddy(m_last);
    label->setToolTip(m_last->toolTip());
    m_last->setAccessibleName(label->text().remove(u'&').remove(u':'));
    m_parts.binding.follow(label);
    label = nullptr;
  }
}

FormGrid& FormGrid::settle(QWidget* control) {
  place(control);
  m_grid->addWidget(m_parts.binding.problemLine(), m_row++, m_column, 1, 2 - m_column);
  m_last = control;
  head(m_before);
  head(m_label);
  return *this;
}

FormGrid& FormGrid::box(bool SplitSetup::*setting, const char* label) {
  return settle(m_parts.binding.box(setting, QString::fromLatin1(label), m_line));
}

FormGrid& FormGrid::text(QString SplitSetup::*setting, Shown shown) {
  return settle(m_parts.binding.text(setting, shown, m_line));
}

FormGrid& FormGrid::whole(int SplitSetup::*setting, WholeLimits limits) {
  return settle(m_parts.binding.whole(setting, limits, m_line));
}

FormGrid& FormGrid::factor(double SplitSetup::*setting) {
  return settle(m_parts.binding.factor(setting, m_line));
}

FormGrid& FormGrid::list(QString SplitSetup::*setting, const QStringList& entries) {
  return settle(m_parts.binding.list(setting, entries, m_line));
}

FormGrid& FormGrid::longText(QString SplitSetup::*setting) {
  m_grid->setAlignment(m_label, Qt::AlignTop);
  return settle(m_parts.binding.longText(setting, m_line));
}

FormGrid& FormGrid::called(const char* name) {
  m_last->setAccessibleName(QString::fromLatin1(name));
  return *this;
}

FormGrid& FormGrid::whenEmpty(const char* text) {
  last<QLineEdit>()->setPlaceholderText(QString::fromLatin1(text));
  return *this;
}

FormGrid& FormGrid::before(const char* label) {
  m_before = new QLabel(QString::fromLatin1(label), m_line);
  place(m_before);
  return *this;
}

FormGrid& FormGrid::note(const QString& text) {
  QLabel* label = quietLabel("", m_line);
  label->setText(text);
  label->setWordWrap(m_parts.isNarrow);
  if (m_parts.isNarrow) {
    label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  }
  return add(label);
}

FormGrid& FormGrid::add(QWidget* control) {
  place(control);
  if (m_last != nullptr) {
    m_parts.binding.follow(control);
  }
  return *this;
}

QString FormGrid::chosen(const Browse& how, const QString& now) const {
  const QString start = !now.isEmpty() ? now
                        : how.memoryKey != nullptr
                            ? m_parts.memory->text(QString::fromLatin1(how.memoryKey))
                            : QString::fromLatin1(how.offered);
  const QString title = QString::fromLatin1(how.title != nullptr ? how.title : how.toolTip);
  const QString filter = QString::fromLatin1(how.filter);
  QWidget* over = m_owner->window();
  return how.what == Browse::For::Folder ? m_parts.dialogs.chooseFolder(over, title, start)
         : how.what == Browse::For::File
             ? m_parts.dialogs.openFile(over, {title, filter, start, {}})
             : m_parts.dialogs.saveFile(over, {title, filter, start, QStringLiteral("TXT")});
}

FormGrid& FormGrid::browse(const Browse& how) {
  auto* field = last<QLineEdit>();
  const auto ask = [grid = *this, how, field] {
    const QString path = grid.chosen(how, field->text());
    if (path.isEmpty()) {
      return;
    }
    field->setText(path);
    if (how.memoryKey != nullptr) {
      grid.m_parts.memory->setText(QString::fromLatin1(how.memoryKey),
                                   QFileInfo(path).isDir() ? path : platform::folderOf(path));
    }
  };
  return add(sideButton(how.name, QString::fromLatin1(how.text), QString::fromLatin1(how.toolTip),
                        m_line, ask));
}

FormGrid& FormGrid::insertions(const char* name, const char* text, const char* toolTip,
                               const std::vector<Insertion>& all) {
  QPushButton* button =
      sideButton(name, QString::fromLatin1(text), QString::fromLatin1(toolTip), m_line);
  auto* menu = new QMenu(button);
  button->setMenu(menu);
  for (const Insertion& insertion : all) {
    const QString inserted = QString::fromLatin1(insertion.text);
    QAction* entry = menu->addAction(inserted + u'\t' + QString::fromLatin1(insertion.meaning));
    entry->setObjectName(inserted);
    QObject::connect(entry, &QAction::triggered, m_last, [field = last<QLineEdit>(), inserted] {
      field->insert(inserted);
      field->setFocus();
    });
  }
  return add(button);
}

QLabel* FormGrid::sentence(const char* name) {
  QLabel* label = quietLabel(name, m_owner);
  m_grid->addWidget(label, m_row++, 0, 1, 2);
  return label;
}

FormGrid& FormGrid::hint(const char* name, const char* text) {
  QLabel* label = sentence(name);
  label->setText(QString::fromLatin1(text));
  m_parts.binding.follow(label);
  return *this;
}

FormGrid& FormGrid::say(const char* name, SetupBinding::Words words) {
  m_parts.binding.say(sentence(name), words);
  return *this;
}

} // namespace folivex
