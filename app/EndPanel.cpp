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
  connect(escape, &QShortcut::activated, this, &QWidget::hide);
  hide();
}

QWidget* EndPanel::buildButtons() {
  const auto add = [this](const char* name, const char* text, const char* toolTip,
                          std::function<bool()> isMeant, std::function<void()> act) {
    QPushButton* button = sideButton(name, QString::fromLatin1(text), QString::fromLatin1(toolTip),
                                     this, std::move(act));
    m_buttons.emplace_back(button, std::move(isMeant));
    return button;
  };
  const auto hasMails = [this] { return m_end.mails > 0; };
  return sideBySide(
      this,
      {add(
           "endOpenFolder", "Open folder", "See the outputs",
           [this] { return !m_end.folder.isEmpty(); }, [this] { onOpen(m_end.folder); }),
       add(
           "endViewReport", "View report", "Read what the run did",
           [this] { return !m_end.report.isEmpty(); }, [this] { onOpen(m_end.report); }),
       add("endShowList", "Show list", "See the mails, and change them, before any is sent",
           hasMails, [this] { onShowList(); }),
       add("endSendMails", "Send mails...", "Send the outputs to the addresses on their pages",
           hasMails, [this] { onSendMails(); }),
       gap(),
       add(
           "endClose", "Put away", "Close this panel (Escape)", [] { return true; },
           [this] { hide(); })});
}

void EndPanel::showFindings() {
  constexpr int mostLines = 4;
  m_findings->setPlainText(m_end.findings.join(QLatin1Char('\n')));
  const auto lines = static_cast<int>(std::min<qsizetype>(m_end.findings.size(), mostLines));
  m_findings->setFixedHeight(m_findings->fontMetrics().lineSpacing() * (lines + 1) +
                             2 * m_findings->frameWidth());
  m_findings->setVisible(!m_end.findings.isEmpty());
}

void EndPanel::tell(const RunEnd& end) {
  m_end = end;
  const RunSummary summary = summaryOf(end);
  m_isWarning = summary.isWarning;
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
  m_told->setText(withoutEmptyLines(end.told.join(QLatin1Char('\n'))));
  m_told->setVisible(!end.told.isEmpty());
  showFindings();
  tellMails(end.mails);
  show();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void EndPanel::tellMails(int mails) {
  m_end.mails = mails;
  const QStringList facts = summaryOf(m_end).facts;
  m_facts->setText(facts.join(QLatin1Char('\n')));
  m_facts->setVisible(!facts.isEmpty());
  for (const auto& [button, isMeant] : m_buttons) {
    button->setVisible(isMeant());
  }
  setAccessibleName(QStringLiteral("%1 %2").arg(m_headline->text(), facts.join(QLatin1Char(' '))));
}

void EndPanel::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  QPainter(this).fillRect(0, 0, barWidth, height(), m_isWarning ? problemColor() : successColor());
}

} // namespace folivex
