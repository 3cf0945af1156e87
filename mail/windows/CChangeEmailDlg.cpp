#include "mail/windows/CChangeEmailDlg.h"

#include "platform/Paths.h"
#include "widgets/Controls.h"
#include "widgets/FieldProblem.h"

#include <QLineEdit>

namespace folivex {

namespace {

constexpr int longestAddress = 255;
constexpr int widthInCharacters = 60;

} // namespace

CChangeEmailDlg::CChangeEmailDlg(const QString& address, const QString& file, QWidget* parent)
    : QDialog(parent), m_address(named(new QLineEdit(address, this), "address",
                                       "One e-mail address; empty: nothing is sent for this row")),
      m_problem(std::make_unique<FieldProblem>(m_address)) {
  setObjectName(QStringLiteral("CChangeEmailDlg"));
  setWindowTitle(QStringLiteral("Change Email"));
  m_address->setMaxLength(longestAddress);
  m_address->setMinimumWidth(fontMetrics().averageCharWidth() * widthInCharacters);
  m_address->selectAll();
  connect(m_address, &QLineEdit::textEdited, this, [this] { m_problem->tell({}); });

  const QString name = platform::fileTitle(file);
  const QString text = name.isEmpty()
                           ? QStringLiteral("E-mail address:")
                           : QStringLiteral("E-mail address that %1 is sent to:").arg(name);
  QLabel* label = named(labelFor(m_address, fontMetrics().elidedText(text, Qt::ElideMiddle,
                                                                     m_address->minimumWidth())),
                        "addressLabel");
  label->setTextFormat(Qt::PlainText);
  label->setToolTip(file.toHtmlEscaped());
  stack(this, {label, m_address, m_problem->label(),
               okAndCancel(this, "Take this address", "Leave the address as it was")});
}

CChangeEmailDlg::~CChangeEmailDlg() {
  hide(); // the field must not lose its focus to a dialog that is half gone
}

void CChangeEmailDlg::accept() {
  const QString problem = onTake ? onTake(m_address->text()) : QString();
  m_problem->tell(problem);
  if (problem.isEmpty()) {
    QDialog::accept();
  } else {
    m_address->setFocus();
  }
}

} // namespace folivex
