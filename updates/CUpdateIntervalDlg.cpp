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
  auto* label = new QLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
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
  m_on = new QCheckBox(QStringLiteral("&Check for a newer version"), this);
  m_on->setObjectName(QStringLiteral("on"));
  m_on->setToolTip(QStringLiteral("When the program starts, ask the server below whether there is "
                                  "a newer version"));
  m_days = new QSpinBox(this);
  m_days->setObjectName(QStringLiteral("days"));
  m_days->setRange(UpdateSettings::leastDays, UpdateSettings::mostDays);
  m_days->setToolTip(QStringLiteral("Days between one check and the next"));
  m_address = new QLineEdit(this);
  m_address->setObjectName(QStringLiteral("address"));
  m_address->setPlaceholderText(QStringLiteral("https://"));
  m_address->setMinimumWidth(fontMetrics().averageCharWidth() * 64);
  m_address->setToolTip(QStringLiteral("Address of the document that tells the newest version"));
  m_addressProblem = std::make_unique<FieldProblem>(m_address);
}

void CUpdateIntervalDlg::makeCheckRow() {
  m_lastCheck = makeText("lastCheck", this);
  m_checkNow = sideButton("checkNow", QStringLiteral("Check &now"),
                          QStringLiteral("Ask the server at the address above at once"), this);
  m_result = makeText("result", this);
  m_note = makeText("note", this);
  m_openPage = sideButton("openPage", QStringLiteral("Open its &page"),
                          QStringLiteral("Show the new version's page in the web browser"), this);
  m_note->hide();
  m_openPage->hide();
}

QBoxLayout* CUpdateIntervalDlg::intervalRow() {
  auto* before = new QLabel(QStringLiteral("&every"), this);
  before->setBuddy(m_days);
  auto* after = new QLabel(QStringLiteral("days"), this);
  for (QLabel* label : {before, after}) {
    label->setToolTip(m_days->toolTip());
    connect(m_on, &QCheckBox::toggled, label, &QWidget::setEnabled);
    label->setEnabled(m_on->isChecked());
  }
  auto* row = new QHBoxLayout;
  row->addSpacing(style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                  style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
  row->addWidget(before);
  row->addWidget(m_days);
  row->addWidget(after);
  row->addStretch();
  return row;
}

void CUpdateIntervalDlg::layOut() {
  auto* addressLabel = new QLabel(QStringLiteral("&Address:"), this);
  addressLabel->setBuddy(m_address);
  auto* sent = makeText("sent", this);
  sent->setText(QStringLiteral("The server is told no more than the program's version."));
  sent->setForegroundRole(QPalette::PlaceholderText);

  auto* checkRow = new QHBoxLayout;
  checkRow->addWidget(m_checkNow, 0, Qt::AlignTop);
  checkRow->addWidget(m_lastCheck, 1, Qt::AlignVCenter);
  auto* pageRow = new QHBoxLayout;
  pageRow->addWidget(m_openPage);
  pageRow->addStretch();
  m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  m_buttons->setObjectName(QStringLiteral("buttons"));

  auto* all = new QVBoxLayout(this);
  all->addWidget(m_on, 0, Qt::AlignLeft);
  all->addLayout(intervalRow());
  all->addSpacing(8);
  all->addWidget(addressLabel);
  all->addWidget(m_address);
  all->addWidget(m_addressProblem->label());
  all->addWidget(sent);
  all->addSpacing(8);
  all->addLayout(checkRow);
  all->addWidget(m_result);
  all->addWidget(m_note);
  all->addLayout(pageRow);
  all->addStretch();
  all->addWidget(m_buttons);
}

void CUpdateIntervalDlg::connectFields() {
  connect(m_on, &QCheckBox::toggled, this, [this] { followFields(); });
  connect(m_address, &QLineEdit::textChanged, this, [this] {
    tellProblem({});
    followFields();
  });
  connect(m_address, &QLineEdit::editingFinished, this,
          [this] { tellProblem(problemOf(entered())); });
  connect(m_checkNow, &QPushButton::clicked, this, [this] { checkNow(); });
  connect(m_openPage, &QPushButton::clicked, this, [this] {
    if (!m_dialogs.openOutside(m_page)) {
      m_dialogs.message(this, QStringLiteral("Unable to open: ") + m_page);
    }
  });
  connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
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
