#include "app/EndPanel.h"

#include "widgets/Controls.h"
#include "widgets/Theme.h"

#include <QAccessibleWidget>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>

#include <algorithm>

namespace folivex {

namespace {

constexpr int barWidth = 4;

QAccessibleInterface* alertFor(const QString& /*className*/, QObject* object) {
  auto* panel = dynamic_cast<EndPanel*>(object);
  return panel == nullptr ? nullptr : new QAccessibleWidget(panel, QAccessible::AlertMessage);
}

QLabel* textLabel(const char* name, QWidget* parent) {
  auto* label = named(new QLabel(parent), name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

/// The panel has little height: none of it for empty lines.
QString withoutEmptyLines(QString message) {
  message.remove(QLatin1Char('\r'));
  return message.replace(QLatin1String("\n\n"), QLatin1String("\n"));
}

} // namespace

EndPanel::EndPanel(QWidget* parent)
    : QFrame(parent), m_icon(new QLabel(this)), m_headline(textLabel("endHeadline", this)),
      m_told(textLabel("endTold", this)), m_facts(textLabel("endFacts", this)),
      m_findings(named(new QPlainTextEdit(this), "endFindings", "What was found along the way")) {
  static const bool isInstalled = [] {
    QAccessible::installFactory(alertFor);
    return true;
  }();
  static_cast<void>(isInstalled);
  setObjectName(QStringLiteral("endPanel"));
  setFrameShape(QFrame::StyledPanel);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  QFont bold = m_headline->font();
  bold.setBold(true);
  m_headline->setFont(bold);
  m_findings->setAccessibleName(QStringLiteral("Findings"));
  m_findings->setReadOnly(true);
  m_findings->setTabChangesFocus(true);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(grid->contentsMargins() + QMargins(barWidth, 0, 0, 0));
  grid->addWidget(m_icon, 0, 0, 4, 1, Qt::AlignTop);
  int row = 0;
  for (QWidget* part :
       {static_cast<QWidget*>(m_headline), static_cast<QWidget*>(m_told),
        static_cast<QWidget*>(m_facts), static_cast<QWidget*>(m_findings), buildButtons()}) {
    grid->addWidget(part, row++, 1);
  }
  grid->setColumnStretch(1, 1);
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  escape->setContext(Qt::WidgetWithChildrenShortcut);
  connect(escape, &QShortcut::activated, this, [this] { putAway(); });
  hide();
}

QWidget* EndPanel::buildButtons() {
  const auto open = [this](const QString& path) {
    if (onOpen) {
      onOpen(path);
    }
  };
  const auto run = [](const std::function<void()>& what) {
    if (what) {
      what();
    }
  };
  m_openFolder =
      sideButton("endOpenFolder", QStringLiteral("Open folder"), QStringLiteral("See the outputs"),
                 this, [this, open] { open(m_folder); });
  m_viewReport =
      sideButton("endViewReport", QStringLiteral("View report"),
                 QStringLiteral("Read what the run did"), this, [this, open] { open(m_report); });
  m_showList = sideButton("endShowList", QStringLiteral("Show list"),
                          QStringLiteral("See the mails, and change them, before any is sent"),
                          this, [this, run] { run(onShowList); });
  m_sendMails = sideButton("endSendMails", QStringLiteral("Send mails..."),
                           QStringLiteral("Send the outputs to the addresses on their pages"), this,
                           [this, run] { run(onSendMails); });
  QPushButton* close =
      sideButton("endClose", QStringLiteral("Put away"),
                 QStringLiteral("Close this panel (Escape)"), this, [this] { putAway(); });
  return sideBySide(this, {m_openFolder, m_viewReport, m_showList, m_sendMails, gap(), close});
}

void EndPanel::showFindings(const QStringList& findings) {
  constexpr int mostLines = 4;
  m_findings->setPlainText(findings.join(QLatin1Char('\n')));
  const auto lines = static_cast<int>(std::min<qsizetype>(findings.size(), mostLines));
  m_findings->setFixedHeight(m_findings->fontMetrics().lineSpacing() * (lines + 1) +
                             2 * m_findings->frameWidth());
  m_findings->setVisible(!findings.isEmpty());
}

void EndPanel::tell(const RunEnd& end) {
  const RunSummary summary = summaryOf(end);
  m_isWarning = summary.isWarning;
  m_folder = end.folder;
  m_report = end.report;
  const QString kind = m_isWarning ? QStringLiteral("Warning") : QStringLiteral("The run is over");
  m_headline->setText(m_isWarning ? QStringLiteral("%1: %2").arg(kind, summary.headline)
                                  : summary.headline);
  setTone(m_headline, m_isWarning ? Tone::Problem : Tone::Success);
  const int size = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
  m_icon->setPixmap(style()
                        ->standardIcon(m_isWarning ? QStyle::SP_MessageBoxWarning
                                                   : QStyle::SP_MessageBoxInformation,
                                       nullptr, this)
                        .pixmap(size));
  m_icon->setAccessibleName(kind);
  QStringList told;
  for (const QString& message : end.told) {
    told += withoutEmptyLines(message);
  }
  m_told->setText(told.join(QLatin1Char('\n')));
  m_told->setVisible(!told.isEmpty());
  m_facts->setText(summary.facts.join(QLatin1Char('\n')));
  m_facts->setVisible(!summary.facts.isEmpty());
  showFindings(end.findings);
  m_openFolder->setVisible(!m_folder.isEmpty());
  m_viewReport->setVisible(!m_report.isEmpty());
  m_showList->setVisible(end.mails > 0);
  m_sendMails->setVisible(end.mails > 0);
  setAccessibleName(
      QStringLiteral("%1 %2").arg(m_headline->text(), summary.facts.join(QLatin1Char(' '))));
  show();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void EndPanel::putAway() {
  hide();
  if (onPutAway) {
    onPutAway();
  }
}

void EndPanel::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  QPainter(this).fillRect(0, 0, barWidth, height(), m_isWarning ? problemColor() : successColor());
}

} // namespace folivex
