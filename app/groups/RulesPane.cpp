#include "app/groups/RulesPane.h"

#include "app/dialogs/SettingUse.h"
#include "app/groups/SettingWords.h"
#include "app/groups/SetupGroup.h"
#include "engine/setup/FileNameMethod.h"
#include "widgets/Controls.h"
#include "widgets/WindowMemory.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace folivex {

/// Settings of a dialog of their own: what they come to, and a button that opens it.
struct DialogGroupRow {
  RulesPart part;
  const char* name; ///< object name
  const char* title;
  const char* helpTopic;
  const char* toolTip; ///< of its button
  SetupBinding::Words words;
};

namespace {

constexpr std::array dialogGroups = {
    DialogGroupRow{RulesPart::Mail, "mailGroup", "Mail", "email-settings",
                   "Server, message and address search", mailWords},
    DialogGroupRow{RulesPart::Reports, "reportsGroup", "Reports", "report-options",
                   "Reports, list of names, gaps between words", reportWords},
    DialogGroupRow{RulesPart::Other, "otherGroup", "Other settings", "other-settings",
                   "What is removed before a run and from names", otherWords},
    DialogGroupRow{RulesPart::Command, "commandGroup", "Split command", "split-command",
                   "Write outputs with another program", commandWords},
};

QFrame* ruler(QWidget* parent) {
  auto* line = new QFrame(parent);
  line->setFrameShape(QFrame::HLine);
  line->setEnabled(false); // in the faint colour, which is seen on dark ground, too
  return line;
}

SettingFindings checkWhileEditing(const SplitSetup& setup) {
  return checkSplitSettings(setup, SetupPurpose::Editing);
}

} // namespace

RulesPane::RulesPane(Dialogs& dialogs, WindowMemory& memory, QWidget* parent)
    : SetupForm(checkWhileEditing, parent) {
  setObjectName(QStringLiteral("rulesPane"));
  QList<QWidget*> column;
  for (std::size_t i = 0; i < m_groups.size(); ++i) {
    m_groups[i] = new SetupGroup(setupGroups()[i], {binding(), dialogs, &memory, true}, widget());
    column += {m_groups[i], ruler(widget())};
  }
  for (const DialogGroupRow& row : dialogGroups) {
    column += dialogGroup(row);
  }
  addColumn(column);
  constexpr int air = 6;
  widget()->layout()->setContentsMargins(air, air, air, air);
  m_leastWidth = widget()->minimumSizeHint().width();
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  rememberFolds(memory);
  binding().onEdited = [this](const QString& key) { edited(key); };
  for (QLineEdit* field : findChildren<QLineEdit*>()) {
    field->installEventFilter(this);
    field->setAcceptDrops(false); // a file dropped there is for the window
  }
}

QWidget* RulesPane::dialogGroup(const DialogGroupRow& row) {
  auto* group = named(new QWidget(widget()), row.name);
  group->setProperty("helpTopic", QString::fromLatin1(row.helpTopic));
  const QString title = QString::fromLatin1(row.title);
  auto* heading = new QLabel(title, group);
  QFont bold = heading->font();
  bold.setBold(true);
  heading->setFont(bold);
  auto* text = named(new QLabel(group), "words");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  binding().say(text, row.words);
  const QByteArray name = QByteArray(row.name) + "Change";
  QPushButton* change =
      sideButton(name.constData(), QStringLiteral("Change..."), QString::fromLatin1(row.toolTip),
                 group, [this, part = row.part] { onDialogWanted(part); });
  change->setAccessibleName(QStringLiteral("Change: %1").arg(title));
  auto* grid = new QGridLayout(group);
  constexpr QMargins inside(14, 2, 0, 2);
  grid->setContentsMargins(inside);
  grid->addWidget(heading, 0, 0);
  grid->addWidget(text, 1, 0);
  grid->addWidget(change, 0, 1, 2, 1, Qt::AlignVCenter);
  grid->setColumnStretch(0, 1);
  return group;
}

void RulesPane::rememberFolds(WindowMemory& memory) {
  const QString folded = QStringLiteral("folded");
  for (QWidget* child : findChildren<QWidget*>()) {
    auto* foldout = dynamic_cast<Foldout*>(child);
    if (foldout == nullptr) {
      continue;
    }
    m_foldouts += foldout;
    const QString key = QStringLiteral("rules/") + foldout->objectName();
    const QString kept = memory.text(key);
    foldout->setFolded(kept.isEmpty() ? foldout->rank() == Foldout::Rank::Part : kept == folded);
    foldout->onToggled = [this, foldout, key, folded, &memory] {
      memory.setText(key, foldout->isFolded() ? folded : QStringLiteral("unfolded"));
      fitContent();
    };
  }
}

QSize RulesPane::minimumSizeHint() const {
  constexpr int leastHeight = 120;
  return {m_leastWidth + verticalScrollBar()->sizeHint().width(), leastHeight};
}

QSize RulesPane::sizeHint() const {
  constexpr int startHeight = 560; // more is scrolled to
  return {minimumSizeHint().width(), startHeight};
}

/// Ctrl+Z in a field takes back what was done to the setup, and not to the field alone.
bool RulesPane::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
      event->ignore();
      return true;
    }
  }
  return SetupForm::eventFilter(watched, event);
}

void RulesPane::setSetup(const SplitSetup& setup) {
  SetupForm::setSetup(setup);
  adaptPane();
}

void RulesPane::setEffect(RulesPart part, const QString& text) {
  m_groups.at(static_cast<std::size_t>(part))->setEffect(text);
  fitContent();
}

void RulesPane::edited(const QString& key) {
  if (m_isAdapting) {
    return; // one choice makes another: both are one step
  }
  const SplitSetup before = m_setup;
  adaptPane();
  m_setup = shown();
  if (onEdited && before != m_setup) {
    const bool isTyped = qobject_cast<const QLineEdit*>(binding().control(key)) != nullptr;
    onEdited({before, m_setup, binding().label(key), isTyped ? key : QString()});
  }
}

void RulesPane::adaptPane() {
  const QScopedValueRollback<bool> adapting(m_isAdapting, true);
  nameByBookmarks(!matchesWords(shown()));
  QSet<QString> idle = idleSettings(shown());
  idle.remove(QStringLiteral("EXTRACT")); // the method of names stands for what bookmarks do, too
  binding().hideLines(idle);
  tellHeld(idle);
  adapt();
}

/// Ranges that come from bookmarks are named after them, and only they are. The method that was
/// chosen before comes back with the words.
void RulesPane::nameByBookmarks(bool byBookmarks) {
  auto* methods = static_cast<QComboBox*>(binding().control(QStringLiteral("EXTRACT")));
  const int entry = methods->findText(bookmarkFileNameMethodText());
  if (byBookmarks && entry < 0) {
    m_methodForWords = methods->currentText();
    methods->addItem(bookmarkFileNameMethodText());
    methods->setCurrentIndex(methods->count() - 1);
  } else if (!byBookmarks && entry >= 0) {
    methods->removeItem(entry);
    methods->setCurrentText(m_methodForWords);
  }
}

void RulesPane::tellHeld(const QSet<QString>& idle) {
  const QSet<QString> own = ownSettings(shown());
  const auto ownIn = [&](const QWidget* part, bool onlyIdle) {
    QStringList parts;
    for (const QString& key : binding().keys()) {
      if (own.contains(key) && part->isAncestorOf(binding().control(key)) &&
          (!onlyIdle || idle.contains(key))) {
        parts += binding().said(key);
      }
    }
    return parts.join(QStringLiteral("; "));
  };
  for (Foldout* foldout : m_foldouts) {
    foldout->setHeld(ownIn(foldout, false));
  }
  for (SetupGroup* group : m_groups) {
    group->setKept(ownIn(group, true));
  }
}

bool RulesPane::check(SetupPurpose purpose, const SettingFindings& more) {
  return tellAll(more + checkSplitSettings(shown(), purpose));
}

} // namespace folivex
