#include "app/dialogs/CPageNumberDlg.h"

#include "app/dialogs/FieldChecks.h"
#include "widgets/Controls.h"

#include <QLineEdit>

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
  QWidget* row =
      sideBySide(this, {labelFor(m_page, QStringLiteral("&Page number:")), m_page,
                        new QLabel(QStringLiteral("of %1").arg(pageCount), this), gap()});
  stack(this,
        {row, m_problem->label(), gap(), okAndCancel(this, "Show this page", "Show no page")});
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
