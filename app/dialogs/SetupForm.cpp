#include "app/dialogs/SetupForm.h"

#include "app/dialogs/SettingUse.h"
#include "app/dialogs/SetupChecks.h"
#include "widgets/Foldout.h"

#include <QApplication>
#include <QVBoxLayout>

#include <algorithm>

namespace folivex {

SetupForm::SetupForm(Check check, QWidget* parent)
    : QScrollArea(parent), m_check(std::move(check)) {
  // The Tab key comes in from elsewhere, too, where the form may be scrolled away from its ends.
  connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* /*before*/, QWidget* now) {
    if (now != nullptr && widget()->isAncestorOf(now) && now->visibleRegion().isEmpty()) {
      ensureWidgetVisible(now);
    }
  });
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus); // its fields take the cursor, and it scrolls to them
  setWidget(new QWidget(this));
  m_columns = new QBoxLayout(QBoxLayout::LeftToRight, widget());
  m_columns->setContentsMargins(0, 0, 0, 0);
}

void SetupForm::addColumn(const QList<QWidget*>& groups) {
  auto* owner = new QWidget(widget());
  auto* column = new QVBoxLayout(owner);
  column->setContentsMargins(0, 0, 0, 0);
  for (QWidget* group : groups) {
    column->addWidget(group);
  }
  if (!column->expandingDirections().testFlag(Qt::Vertical)) {
    column->addStretch(1);
  }
  m_columns->addWidget(owner, 1);
}

void SetupForm::setSetup(const SplitSetup& setup) {
  m_setup = setup;
  m_binding.show(setup);
}

SplitSetup SetupForm::shown() const {
  SplitSetup setup = m_setup;
  m_binding.take(setup);
  return setup;
}

SettingFindings SetupForm::withInput(const SettingFindings& findings) const {
  return m_binding.inputFindings() + findings + lostInFile(shown(), m_binding.keys());
}

void SetupForm::adapt() {
  const SplitSetup setup = shown();
  m_binding.adapt(setup, idleSettings(setup));
  m_binding.tell(withInput(m_check(setup)), SetupBinding::Telling::Editing);
  fitContent();
}

bool SetupForm::tellAll(const SettingFindings& findings) {
  const SettingFindings all = withInput(findings);
  for (const SettingFinding& finding : all) {
    QWidget* control = m_binding.control(finding.key);
    if (finding.kind == FindingKind::Problem && control != nullptr) {
      unfoldTo(control);
    }
  }
  m_binding.tell(all, SetupBinding::Telling::All);
  fitContent();
  m_binding.focusFirstProblem();
  if (hasProblem(all) && window()->focusWidget() != nullptr) {
    ensureWidgetVisible(window()->focusWidget());
  }
  return !hasProblem(all);
}

void SetupForm::fitContent() {
  // A line that is shown tells the layout above it only when events are handled next, and a scroll
  // area does not ask how high wrapped lines become.
  for (QWidget* inner : widget()->findChildren<QWidget*>()) {
    if (inner->layout() != nullptr) {
      inner->layout()->invalidate();
      inner->updateGeometry();
    }
  }
  m_columns->invalidate();
  widget()->setMinimumHeight(std::max(m_columns->totalHeightForWidth(widget()->width()),
                                      m_columns->totalSizeHint().height()));
}

int SetupForm::missingHeight() const {
  return std::max(widget()->minimumHeight() - viewport()->height(), 0);
}

QSize SetupForm::sizeHint() const {
  return widget()->sizeHint();
}

void SetupForm::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  int width = -m_columns->spacing(); // of the columns side by side
  for (int i = 0; i < m_columns->count(); ++i) {
    width += m_columns->itemAt(i)->minimumSize().width() + m_columns->spacing();
  }
  const bool isStacked = m_columns->count() > 1 && viewport()->width() < width;
  if (isStacked != (m_columns->direction() == QBoxLayout::TopToBottom)) {
    m_columns->setDirection(isStacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_columns->setStretch(0, isStacked ? 0 : 1);
  }
  fitContent();
}

} // namespace folivex
