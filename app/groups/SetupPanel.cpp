#include "app/groups/SetupPanel.h"

#include "app/dialogs/SettingUse.h"
#include "app/groups/SetupGroups.h"

#include <QScrollBar>

namespace folivex {

SetupPanel::SetupPanel(Dialogs& dialogs, WindowMemory& memory, QWidget* parent) : FormArea(parent) {
  setObjectName(QStringLiteral("setupPanel"));
  const GroupParts parts{m_binding, dialogs, memory};
  auto* source = new SourceGroup(parts, widget());
  m_search = new SearchGroup(parts, widget());
  auto* ranges = new RangesGroup(parts, widget());
  m_names = new NamesGroup(parts, widget());
  auto* output = new OutputGroup(parts, widget());
  setColumns({source, m_search, ranges}, {m_names, output});
  m_binding.onEdited = [this] { adapt(); };
}

QPushButton* SetupPanel::viewPageButton() const {
  return m_search->viewPageButton();
}

QSize SetupPanel::sizeHint() const {
  constexpr int linesToTell = 4; // a few problems or notes can be told without scrolling
  return FormArea::sizeHint() +
         QSize(verticalScrollBar()->sizeHint().width(), linesToTell * fontMetrics().lineSpacing());
}

void SetupPanel::setSetup(const SplitSetup& setup) {
  m_setup = setup;
  m_binding.show(setup);
  adapt();
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
  m_binding.tell(
      joined({m_binding.inputFindings(), checkSplitSettings(setup, SetupPurpose::Editing),
              lostInFile(setup, m_binding.keys())}),
      SetupBinding::Telling::Editing);
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
  return tell(joined({m_binding.inputFindings(), more, checkSplitSettings(shown(), purpose)}));
}

bool SetupPanel::checkInput() {
  return tell(m_binding.inputFindings());
}

} // namespace folivex
