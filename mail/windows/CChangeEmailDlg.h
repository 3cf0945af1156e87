// CChangeEmailDlg: another address for one row of the e-mail list.
#pragma once

#include <QDialog>

#include <functional>
#include <memory>

class QLineEdit;

namespace folivex {

class FieldProblem;

class CChangeEmailDlg : public QDialog {
public:
  /// `file` is what goes to the address, for the person to know which row it is.
  CChangeEmailDlg(const QString& address, const QString& file, QWidget* parent);
  ~CChangeEmailDlg() override;

  /// Takes the text; returns why it cannot, and the dialog stays open with that.
  std::function<QString(const QString& text)> onTake;

  void accept() override; ///< OK

private:
  QLineEdit* m_address;
  std::unique_ptr<FieldProblem> m_problem;
};

} // namespace folivex
