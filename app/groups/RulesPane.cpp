#include "app/groups/RulesPane.h"

#include "app/dialogs/SettingUse.h"
#include "app/groups/SettingWords.h"
#include "app/groups/SetupGroups.h"
#include "widgets/WindowMemory.h"

#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr std::array dialogGroups = {
    DialogGroupRow{"mailGroup", "Mail", "email-settings", "Server, message and address search",
                   mailWords},
    DialogGroupRow{"reportsGroup", "Reports", "report-options",
                   "Reports, list of names, gaps between words", reportWords},
    DialogGroupRow{"otherGroup", "Other settings", "other-settings",
                   "What is removed before a run and from names", otherWords},
    DialogGroupRow{"commandGroup", "Split command", "split-command",
                   "Write outputs with another program", commandWords},
};

QFrame* ruler(QWidget* parent) {
  auto* line = new QFrame(parent);
  line->setFrameShape(QFrame::HLine);
  line->setEnabled(false); // in the faint colour, which is seen on dark ground, too
  return line;
}

} // namespace

RulesPane::RulesPane(Dialogs& dialogs, WindowMemory& memory, QWidget* parent) : FormArea(parent) {
  setObjectName(QStringLiteral("rulesPane"));
  const GroupParts parts{m_binding, dialogs, memory};
  m_groups = {new SourceGroup(parts, widget()), new SearchGroup(parts, widget()),
              m_ranges = new RangesGroup(parts, widget()),
              m_names = new NamesGroup(parts, widget()), new OutputGroup(parts, widget())};
  auto* column = new QVBoxLayout(widget());
  for (SetupGroup* group : m_groups) {
    column->addWidget(group);
    column->addWidget(ruler(widget()));
  }
  buildDialogGroups();
  column->addStretch(1);
  constexpr int air = 6;
  column->setContentsMargins(air, air, air, air);
  m_leastWidth = widget()->minimumSizeHint().width();
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  rememberFolds(memory);
  m_binding.onEdited = [this](const QString& key) { edited(key); };
  for (QLineEdit* field : findChildren<QLineEdit*>()) {
    field->installEventFilter(this);
  }
}

void RulesPane::buildDialogGroups() {
  for (const DialogGroupRow& row : dialogGroups) {
    auto* group = new DialogGroup(row, widget());
    const auto part =
        static_cast<RulesPart>(static_cast<std::size_t>(RulesPart::Mail) + m_dialogGroups.size());
    group->onChange = [this, part] {
      if (onDialogWanted) {
        onDialogWanted(part);
      }
    };
    static_cast<QVBoxLayout*>(widget()->layout())->addWidget(group);
    m_dialogGroups.push_back(group);
  }
}

void RulesPane::rememberFolds(WindowMemory& memory) {
  const QString folded = QStringLiteral("folded");
  for (QWidget* child : findChildren<QWidget*>()) {
    auto* foldout = dynamic_cast<Foldout*>(child);
    if (foldout == nullptr) {
      continue;
    }
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
  return FormArea::eventFilter(watched, event);
}

void RulesPane::setSetup(const SplitSetup& setup) {
  m_setup = setup;
  m_binding.show(setup);
  adapt();
}

void RulesPane::setEffect(RulesPart part, const QString& text) {
  m_groups.at(static_cast<std::size_t>(part))->setEffect(text);
  fitContent();
}

SplitSetup RulesPane::shown() const {
  SplitSetup setup = m_setup;
  m_binding.take(setup);
  return setup;
}

void RulesPane::edited(const QString& key) {
  if (m_isAdapting) {
    return; // one choice makes another: both are one step
  }
  const SplitSetup before = m_setup;
  adapt();
  m_setup = shown();
  if (onEdited && before != m_setup) {
    QString label = m_binding.label(key);
    label.remove(QLatin1Char(':'));
    const bool isTyped = qobject_cast<const QLineEdit*>(m_binding.control(key)) != nullptr;
    onEdited({before, m_setup, label, isTyped ? key : QString()});
  }
}

void RulesPane::adapt() {
  const QScopedValueRollback<bool> adapting(m_isAdapting, true);
  m_names->adapt(shown());
  const SplitSetup setup = shown();
  m_ranges->adapt(setup);
  for (DialogGroup* group : m_dialogGroups) {
    group->adapt(setup);
  }
  const QSet<QString> idle = idleSettings(setup);
  m_binding.disable(idle);
  // The method of names stands for what the bookmarks do, too.
  m_binding.hideLines(QSet<QString>(idle) -= {QStringLiteral("EXTRACT")});
  tellHeld(setup, idle);
  m_binding.tell(
      joined({m_binding.inputFindings(), checkSplitSettings(setup, SetupPurpose::Editing),
              lostInFile(setup, m_binding.keys())}),
      SetupBinding::Telling::Editing);
  fitContent();
}

/// The settings of these keys with their values, for a person.
QString RulesPane::said(const QStringList& keys) const {
  QStringList parts;
  for (const QString& key : keys) {
    QString label = m_binding.label(key);
    const QString value = m_binding.shownValue(key);
    label.remove(QLatin1Char(':'));
    parts += value.isEmpty() ? label : QStringLiteral("%1 %2").arg(label, value);
  }
  return parts.join(QStringLiteral("; "));
}

void RulesPane::tellHeld(const SplitSetup& setup, const QSet<QString>& idle) {
  const QSet<QString> own = ownSettings(setup);
  const auto ownIn = [&](const QWidget* part, bool onlyIdle) {
    QStringList keys;
    for (const QString& key : m_binding.keys()) {
      if (own.contains(key) && part->isAncestorOf(m_binding.control(key)) &&
          (!onlyIdle || (idle.contains(key) && key != QLatin1String("EXTRACT")))) {
        keys += key;
      }
    }
    return said(keys);
  };
  for (SetupGroup* group : m_groups) {
    group->setHeld(ownIn(group, false));
    if (auto* more = group->more(); more != nullptr) {
      more->setHeld(ownIn(more, false));
    }
    const QString kept = ownIn(group, true);
    group->setKept(kept.isEmpty() ? QString()
                                  : QStringLiteral("Kept, but not used now: %1").arg(kept));
  }
}

bool RulesPane::tell(const SettingFindings& findings) {
  for (const SettingFinding& finding : findings) {
    QWidget* control = m_binding.control(finding.key);
    if (finding.kind == FindingKind::Problem && control != nullptr) {
      unfoldTo(control);
    }
  }
  m_binding.tell(findings, SetupBinding::Telling::All);
  fitContent();
  m_binding.focusFirst(findings);
  if (hasProblem(findings) && window()->focusWidget() != nullptr) {
    ensureWidgetVisible(window()->focusWidget());
  }
  return !hasProblem(findings);
}

bool RulesPane::check(SetupPurpose purpose, const SettingFindings& more) {
  return tell(joined({m_binding.inputFindings(), more, checkSplitSettings(shown(), purpose)}));
}

bool RulesPane::checkInput() {
  return tell(m_binding.inputFindings());
}

} // namespace folivex
