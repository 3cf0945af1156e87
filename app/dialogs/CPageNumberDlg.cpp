#include "app/dialogs/CPageNumberDlg.h"

#include "app/dialogs/FieldChecks.h"
#include "app/dialogs/FormGrid.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace folivex {

CPageNumberDlg::CPageNumberDlg(int pageCount, int page, QWidget* parent)
    : QDialog(parent), m_pageCount(pageCount), m_page(numberField(this)) {
  setObjectName(QStringLiteral("pageNumber"));
  setWindowTitle(QStringLiteral("Page number"));
  m_page->setObjectName(QStringLiteral("page"));
  m_page->setToolTip(QStringLiteral("A page of the source, from 1 to %1").arg(pageCount));
  m_page->setText(QString::number(std::clamp(page, 1, pageCount)));
  m_page->selectAll();
  m_problem = std::make_unique<FieldProblem>(m_page);
  auto* label = new QLabel(QStringLiteral("&Page number:"), this);
  label->setBuddy(m_page);
  auto* row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(m_page);
  row->addWidget(new QLabel(QStringLiteral("of %1").arg(pageCount), this));
  row->addStretch(1);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("ok"));
  buttons->button(QDialogButtonBox::Ok)->setToolTip(QStringLiteral("Show this page"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancel"));
  buttons->button(QDialogButtonBox::Cancel)->setToolTip(QStringLiteral("Show no page"));
  connect(buttons, &QDialogButtonBox::accepted, this, &CPageNumberDlg::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &CPageNumberDlg::reject);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addWidget(m_problem->label());
  layout->addStretch(1);
  layout->addWidget(buttons);
}

int CPageNumberDlg::page() const {
  return m_page->text().trimmed().toInt();
}

void CPageNumberDlg::accept() {
  const QString problem = wholeNumberProblem(m_page->text(), {1, m_pageCount});
  m_problem->tell(problem);
  if (problem.isEmpty()) {
    QDialog::accept();
  } else {
    m_page->setFocus();
    m_page->selectAll();
  }
}

} // namespace folivex
