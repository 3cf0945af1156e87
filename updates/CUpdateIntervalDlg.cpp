#include "updates/CUpdateIntervalDlg.h"

#include "widgets/Controls.h"
#include "widgets/Theme.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStyle>
#include <QVBoxLayout>

namespace folivex {

namespace {

QLabel* makeText(const char* name, QWidget* parent) {
  QLabel* label = named(new QLabel(parent), name);
  label->setTextFormat(Qt::PlainText); // what a server says is no markup
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

} // namespace

CUpdateIntervalDlg::CUpdateIntervalDlg(UpdateCheck& check, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_check(check), m_dialogs(dialogs) {
  setObjectName(QStringLiteral("CUpdateIntervalDlg"));
  setWindowTitle(QStringLiteral("Update Check"));
  makeFields();
  makeCheckRow();
  layOut();
  fill(m_check.settings());
  connectFields();
  followFields();
}

CUpdateIntervalDlg::~CUpdateIntervalDlg() {
  m_check.stop();
  // A field that loses the focus while the window goes away still tells its problem.
  hide();
}

void CUpdateIntervalDlg::makeFields() {
  m_on = named(new QCheckBox(QStringLiteral("&Check for a newer version"), this), "on",
               "When the program starts, ask the server below whether there is a newer version");
  m_days = named(new QSpinBox(this), "days", "Days between one check and the next");
  m_days->setRange(UpdateSettings::leastDays, UpdateSettings::mostDays);
  m_address = named(new QLineEdit(this), "address",
                    "Address of the document that tells the newest version");
  m_address->setPlaceholderText(QStringLiteral("https://"));
  m_address->setMinimumWidth(fontMetrics().averageCharWidth() * 64);
  m_addressProblem = std::make_unique<FieldProblem>(m_address);
}

void CUpdateIntervalDlg::makeCheckRow() {
  m_lastCheck = makeText("lastCheck", this);
  m_checkNow = sideButton("checkNow", QStringLiteral("Check &now"),
                          QStringLiteral("Ask the server at the address above at once"), this,
                          [this] { checkNow(); });
  m_result = makeText("result", this);
  m_note = makeText("note", this);
  m_openPage = sideButton("openPage", QStringLiteral("Open its &page"),
                          QStringLiteral("Show the new version's page in the web browser"), this,
                          [this] { openPage(); });
  m_note->hide();
  m_openPage->hide();
}

QBoxLayout* CUpdateIntervalDlg::intervalRow() {
  QLabel* before = labelFor(m_days, QStringLiteral("&every"));
  auto* after = new QLabel(QStringLiteral("days"), this);
  for (QLabel* label : {before, after}) {
    label->setToolTip(m_days->toolTip());
    connect(m_on, &QCheckBox::toggled, label, &QWidget::setEnabled);
    label->setEnabled(m_on->isChecked());
  }
  auto* row = new QHBoxLayout;
  row->addSpacing(style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                  style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
  for (QWidget* part : {static_cast<QWidget*>(before), static_cast<QWidget*>(m_days),
                        static_cast<QWidget*>(after)}) {
    row->addWidget(part);
  }
  row->addStretch();
  return row;
}

void CUpdateIntervalDlg::layOut() {
  auto* sent = makeText("sent", this);
  sent->setText(QStringLiteral("The server is told no more than the program's version."));
  sent->setForegroundRole(QPalette::PlaceholderText);

  auto* checkRow = new QHBoxLayout;
  checkRow->addWidget(m_checkNow, 0, Qt::AlignTop);
  checkRow->addWidget(m_lastCheck, 1, Qt::AlignVCenter);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->setObjectName(QStringLiteral("buttons"));
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* all = new QVBoxLayout(this);
  all->addWidget(m_on, 0, Qt::AlignLeft);
  all->addLayout(intervalRow());
  all->addSpacing(8);
  all->addWidget(labelFor(m_address, QStringLiteral("&Address:")));
  all->addWidget(m_address);
  all->addWidget(m_addressProblem->label());
  all->addWidget(sent);
  all->addSpacing(8);
  all->addLayout(checkRow);
  all->addWidget(m_result);
  all->addWidget(m_note);
  all->addWidget(m_openPage, 0, Qt::AlignLeft);
  all->addStretch();
  all->addWidget(buttons);
}

void CUpdateIntervalDlg::connectFields() {
  connect(m_on, &QCheckBox::toggled, this, [this] { followFields(); });
  connect(m_address, &QLineEdit::textChanged, this, [this] {
    tellProblem({});
    followFields();
  });
  connect(m_address, &QLineEdit::editingFinished, this,
          [this] { tellProblem(problemOf(entered())); });
}

void CUpdateIntervalDlg::openPage() {
  if (!m_dialogs.openOutside(m_page)) {
    m_dialogs.message(this, QStringLiteral("Unable to open: ") + m_page);
  }
}

UpdateSettings CUpdateIntervalDlg::entered() const {
  UpdateSettings settings;
  settings.isOn = m_on->isChecked();
  settings.address = m_address->text().trimmed();
  settings.intervalDays = m_days->value();
  return settings;
}

void CUpdateIntervalDlg::fill(const UpdateSettings& settings) {
  m_on->setChecked(settings.isOn);
  m_days->setValue(settings.intervalDays);
  m_address->setText(settings.address);
  showLastCheck(settings.lastCheck);
}

void CUpdateIntervalDlg::showLastCheck(const QDateTime& lastCheck) {
  m_lastCheck->setText(QStringLiteral("Last check: ") +
                       (lastCheck.isValid()
                            ? locale().toString(lastCheck.toLocalTime(), QLocale::ShortFormat)
                            : QStringLiteral("never")));
}

// A layout lets a window be lower than its wrapped texts need.
void CUpdateIntervalDlg::makeRoom() {
  layout()->activate();
  setMinimumHeight(layout()->totalHeightForWidth(width()));
}

void CUpdateIntervalDlg::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  makeRoom();
}

void CUpdateIntervalDlg::tellProblem(const QString& problem) {
  m_addressProblem->tell(problem);
  makeRoom();
}

void CUpdateIntervalDlg::followFields() {
  m_days->setEnabled(m_on->isChecked());
  m_checkNow->setEnabled(!m_check.isRunning() && addressProblemOf(entered().address).isEmpty());
}

void CUpdateIntervalDlg::checkNow() {
  m_note->hide();
  m_openPage->hide();
  tellResult(QStringLiteral("The server is being asked..."), Tone::Plain);
  m_check.start(entered().address, [this](const UpdateResult& result) { showResult(result); });
  followFields();
}

void CUpdateIntervalDlg::showResult(const UpdateResult& result) {
  const bool hasFailed = result.outcome == UpdateOutcome::Failed;
  const bool isNewer = result.outcome == UpdateOutcome::Newer;
  tellResult(result.text, hasFailed ? Tone::Problem : Tone::Success);
  m_page = result.offer.page;
  m_openPage->setVisible(isNewer && !m_page.isEmpty());
  m_note->setText(result.offer.note);
  m_note->setVisible(isNewer && !result.offer.note.isEmpty());
  showLastCheck(m_check.settings().lastCheck);
  followFields();
  makeRoom();
}

void CUpdateIntervalDlg::tellResult(const QString& text, Tone tone) {
  m_result->setText(text);
  setTone(m_result, tone);
  makeRoom();
}

void CUpdateIntervalDlg::accept() {
  const QString problem = problemOf(entered());
  tellProblem(problem);
  if (!problem.isEmpty()) {
    m_address->setFocus();
    return;
  }
  m_check.keepSettings(entered());
  QDialog::accept();
}

} // namespace folivex
