#include "mail/windows/CChangeEmailDlg.h"

#include "platform/Paths.h"
#include "widgets/FieldProblem.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr int longestAddress = 255;
constexpr int widthInCharacters = 60;

} // namespace

CChangeEmailDlg::CChangeEmailDlg(const QString& address, const QString& file, QWidget* parent)
    : QDialog(parent), m_address(new QLineEdit(address, this)),
      m_problem(std::make_unique<FieldProblem>(m_address)) {
  setObjectName(QStringLiteral("CChangeEmailDlg"));
  setWindowTitle(QStringLiteral("Change Email"));
  m_address->setObjectName(QStringLiteral("address"));
  m_address->setMaxLength(longestAddress);
  m_address->setToolTip(QStringLiteral("One e-mail address; empty: nothing is sent for this row"));
  m_address->setMinimumWidth(fontMetrics().averageCharWidth() * widthInCharacters);
  m_address->selectAll();

  auto* label = new QLabel(this);
  label->setObjectName(QStringLiteral("addressLabel"));
  const QString name = platform::fileTitle(file);
  label->setText(fontMetrics().elidedText(
      name.isEmpty() ? QStringLiteral("E-mail address:")
                     : QStringLiteral("E-mail address that %1 is sent to:").arg(name),
      Qt::ElideMiddle, m_address->minimumWidth()));
  label->setTextFormat(Qt::PlainText);
  label->setToolTip(file.toHtmlEscaped());
  label->setBuddy(m_address);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("ok"));
  buttons->button(QDialogButtonBox::Ok)->setToolTip(QStringLiteral("Take this address"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancel"));
  buttons->button(QDialogButtonBox::Cancel)
      ->setToolTip(QStringLiteral("Leave the address as it was"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
  connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
  connect(m_address, &QLineEdit::textEdited, this, [this] { m_problem->tell({}); });

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(m_address);
  layout->addWidget(m_problem->label());
  layout->addWidget(buttons);
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
