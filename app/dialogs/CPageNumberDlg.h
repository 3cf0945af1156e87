// CPageNumberDlg: asks for a page of the source.
#pragma once

#include "widgets/FieldProblem.h"

#include <QDialog>

#include <memory>

class QLineEdit;

namespace folivex {

class CPageNumberDlg : public QDialog {
public:
  /// `pageCount` is at least 1. The page offered first is `page`, or the nearest that there is.
  CPageNumberDlg(int pageCount, int page, QWidget* parent = nullptr);

  /// From 1; after the dialog was accepted a page that there is.
  int page() const;

  void accept() override;

private:
  int m_pageCount;
  QLineEdit* m_page;
  std::unique_ptr<FieldProblem> m_problem;
};

} // namespace folivex
