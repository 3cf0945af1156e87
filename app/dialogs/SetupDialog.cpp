#include "app/dialogs/SetupDialog.h"

#include "widgets/Controls.h"

#include <QGroupBox>
#include <QLayout>
#include <QPushButton>

#include <algorithm>

namespace folivex {

SetupDialog::SetupDialog(const char* name, const char* title, const char* helpTopic, Check check,
                         Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_check(check), m_dialogs(dialogs), m_form(new SetupForm(check, this)) {
  setObjectName(QString::fromLatin1(name));
  setWindowTitle(QString::fromLatin1(title));
  setProperty("helpTopic", QString::fromLatin1(helpTopic)); // F1, wherever the cursor is
  m_form->binding().onEdited = [this](const QString& /*key*/) { adapt(); };
}

FormGrid SetupDialog::group(const char* title, const char* usualLabel) {
  QWidget* owner = *title == '\0' ? new QWidget(m_form->widget())
                                  : new QGroupBox(QString::fromLatin1(title), m_form->widget());
  m_groups += owner;
  return {owner, {m_form->binding(), m_dialogs}, QString::fromLatin1(usualLabel)};
}

void SetupDialog::nextColumn() {
  m_form->addColumn(m_groups);
  m_groups.clear();
}

void SetupDialog::finish(int startWidth) {
  nextColumn();
  m_helpButton =
      sideButton("help", QStringLiteral("Help"), QStringLiteral("Help on these settings (F1)"),
                 this, [this] { onHelp(property("helpTopic").toString()); });
  QWidget* buttons = okAndCancel(this, "Take these settings", "Leave the settings as they were");
  stack(this, {{m_form, 1}, sideBySide(this, {m_helpButton, {buttons, 1}})});
  resizeOnScreen(this, QSize(startWidth, sizeHint().height()));
}

void SetupDialog::setSetup(const SplitSetup& setup) {
  m_form->setSetup(setup);
  adapt();
}

void SetupDialog::adapt() {
  m_form->adapt();
  fit();
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

bool SetupDialog::tellProblems(const SplitSetup& setup) {
  const bool isRight = m_form->tellAll(m_check(setup));
  fit();
  return isRight;
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

} // namespace folivex
