#include "app/groups/SetupPanel.h"

#include "app/dialogs/SettingUse.h"
#include "app/groups/NamesGroup.h"
#include "app/groups/OutputGroup.h"
#include "app/groups/RangesGroup.h"
#include "app/groups/SearchGroup.h"
#include "app/groups/SourceGroup.h"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QVBoxLayout>

namespace folivex {

SetupPanel::SetupPanel(Dialogs& dialogs, WindowMemory& memory, QWidget* parent)
    : QScrollArea(parent) {
  setObjectName(QStringLiteral("setupPanel"));
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  const GroupParts parts{m_binding, dialogs, memory};
  auto* content = new QWidget(this);
  auto* source = new SourceGroup(parts, content);
  m_search = new SearchGroup(parts, content);
  auto* ranges = new RangesGroup(parts, content);
  m_names = new NamesGroup(parts, content);
  auto* output = new OutputGroup(parts, content);
  m_leftGroups = {source, m_search, ranges};
  m_rightGroups = {m_names, output};
  auto* left = new QVBoxLayout;
  for (QWidget* group : m_leftGroups) {
    left->addWidget(group);
  }
  left->addStretch(1);
  auto* right = new QVBoxLayout;
  for (QWidget* group : m_rightGroups) {
    right->addWidget(group);
  }
  right->addStretch(1);
  m_columns = new QBoxLayout(QBoxLayout::LeftToRight, content);
  m_columns->setContentsMargins(0, 0, 0, 0);
  m_columns->addLayout(left, 1);
  m_columns->addLayout(right, 1);
  setWidget(content);
  arrange(Arrangement::SideBySide);
  m_sideBySideWidth = m_columns->minimumSize().width();
  m_binding.onEdited = [this] { adapt(); };
}

QPushButton* SetupPanel::viewPageButton() const {
  return m_search->viewPageButton();
}

QSize SetupPanel::sizeHint() const {
  constexpr int linesToTell = 3; // a few problems can be told without scrolling
  return widget()->sizeHint() +
         QSize(verticalScrollBar()->sizeHint().width(), linesToTell * fontMetrics().lineSpacing());
}

void SetupPanel::setSetup(const SplitSetup& setup) {
  m_setup = setup;
  m_binding.show(setup);
  adapt();
}

void SetupPanel::fitContent() {
  // A scroll area does not ask how high wrapped lines become.
  widget()->setMinimumHeight(heightForContent(widget()));
}

void SetupPanel::arrange(Arrangement arrangement) {
  const bool stacked = arrangement == Arrangement::Stacked;
  m_columns->setDirection(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  m_columns->setStretch(0, stacked ? 0 : 1);
  if (stacked) {
    alignLabels(m_leftGroups + m_rightGroups);
  } else {
    alignLabels(m_leftGroups);
    alignLabels(m_rightGroups);
  }
}

void SetupPanel::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  // Scrolling both ways is no way to fill in a form.
  const bool isNarrow = viewport()->width() < m_sideBySideWidth;
  const bool isStacked = m_columns->direction() == QBoxLayout::TopToBottom;
  if (isNarrow != isStacked) {
    arrange(isNarrow ? Arrangement::Stacked : Arrangement::SideBySide);
  }
  fitContent();
}

SplitSetup SetupPanel::shown() const {
  SplitSetup setup = m_setup;
  m_binding.take(setup);
  return setup;
}

void SetupPanel::adapt() {
  m_names->setByBookmarks(!matchesWords(shown()));
  const SplitSetup setup = shown();
  m_binding.disable(idleSettings(setup));
  SettingFindings findings = m_binding.inputFindings();
  for (const SettingFindings& more :
       {checkSplitSettings(setup, SetupPurpose::Editing), lostInFile(setup, m_binding.keys())}) {
    findings.insert(findings.end(), more.begin(), more.end());
  }
  m_binding.tell(findings, SetupBinding::Telling::Editing);
  fitContent();
}

bool SetupPanel::tell(const SettingFindings& findings) {
  m_binding.tell(findings, SetupBinding::Telling::All);
  fitContent();
  m_binding.focusFirst(findings);
  if (hasProblem(findings) && window()->focusWidget() != nullptr) {
    ensureWidgetVisible(window()->focusWidget());
  }
  return !hasProblem(findings);
}

bool SetupPanel::check(SetupPurpose purpose, const SettingFindings& more) {
  SettingFindings findings = m_binding.inputFindings();
  const SettingFindings found = checkSplitSettings(shown(), purpose);
  findings.insert(findings.end(), more.begin(), more.end());
  findings.insert(findings.end(), found.begin(), found.end());
  return tell(findings);
}

bool SetupPanel::checkInput() {
  return tell(m_binding.inputFindings());
}

} // namespace folivex
