#include "app/dialogs/SetupDialog.h"

#include "app/dialogs/FormArea.h"
#include "app/dialogs/SettingUse.h"
#include "app/dialogs/SetupChecks.h"
#include "widgets/Controls.h"

#include <QKeyEvent>
#include <QPushButton>

#include <algorithm>

namespace folivex {

SetupDialog::SetupDialog(const char* name, const char* title, const char* helpTopic, Check check,
                         Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_dialogs(dialogs), m_helpTopic(QString::fromLatin1(helpTopic)),
      m_check(check) {
  setObjectName(QString::fromLatin1(name));
  setWindowTitle(QString::fromLatin1(title));
}

void SetupDialog::finish(const QList<QWidget*>& left, const QList<QWidget*>& right,
                         int startWidth) {
  m_form = new FormArea(this);
  m_form->setColumns(left, right);
  m_helpButton =
      sideButton("help", QStringLiteral("Help"), QStringLiteral("Help on these settings (F1)"),
                 this, [this] { onHelp(m_helpTopic); });
  QWidget* buttons = okAndCancel(this, "Take these settings", "Leave the settings as they were");
  stack(this, {{m_form, 1}, sideBySide(this, {m_helpButton, {buttons, 1}})});
  resizeOnScreen(this, QSize(startWidth, sizeHint().height()));
  m_binding.onEdited = [this](const QString& /*key*/) { edited(); };
}

void SetupDialog::setSetup(const SplitSetup& setup) {
  m_setup = setup;
  m_binding.show(setup);
  edited();
}

SplitSetup SetupDialog::shown() const {
  SplitSetup setup = m_setup;
  m_binding.take(setup);
  return setup;
}

QSet<QString> SetupDialog::idle(const SplitSetup& setup) const {
  return idleSettings(setup);
}

void SetupDialog::fit() {
  // A line that tells something needs room that the dialog may not have yet. How much is known once
  // it is seen: see showEvent().
  if (!isVisible()) {
    return;
  }
  layout()->activate();
  m_form->fitContent();
  if (const int missing = m_form->missingHeight(); missing > 0) {
    resize(width(), std::max(std::min(height() + missing, heightOnScreen(this)), height()));
  }
}

SettingFindings SetupDialog::findings(const SplitSetup& setup) const {
  return joined({m_binding.inputFindings(), m_check(setup), lostInFile(setup, m_binding.keys())});
}

void SetupDialog::edited() {
  const SplitSetup setup = shown();
  m_binding.disable(idle(setup));
  m_binding.tell(findings(setup), SetupBinding::Telling::Editing);
  fit();
}

bool SetupDialog::tellProblems(const SplitSetup& setup) {
  const SettingFindings found = findings(setup);
  m_binding.tell(found, SetupBinding::Telling::All);
  fit();
  m_binding.focusFirst(found);
  if (hasProblem(found) && focusWidget() != nullptr) {
    m_form->ensureWidgetVisible(focusWidget());
  }
  return !hasProblem(found);
}

void SetupDialog::accept() {
  if (tellProblems(shown())) {
    QDialog::accept();
  }
}

void SetupDialog::showEvent(QShowEvent* event) {
  m_helpButton->setEnabled(onHelp != nullptr);
  QDialog::showEvent(event);
  fit();
}

void SetupDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F1 && onHelp) {
    onHelp(m_helpTopic);
    return;
  }
  QDialog::keyPressEvent(event);
}

} // namespace folivex
