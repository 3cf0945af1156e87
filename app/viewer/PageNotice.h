// PageNotice: what stands in the page's place while there is no page to show.
#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace folivex {

/// Says in plain words why there is no page, and offers what can be done about it.
class PageNotice : public QWidget {
public:
  explicit PageNotice(QWidget* parent);

  /// No file yet.
  void showStart();
  enum class Kind {
    Start,
    Wait,    ///< nothing to be done
    Problem, ///< another try may get over it
    Password ///< it is missing, or wrong; what was typed stays for another try
  };
  void tell(Kind kind, const QString& text);
  /// What was typed was for another file.
  void forgetPassword();

  std::function<void()> onOpenWanted;
  std::function<void()> onSampleWanted;
  std::function<void()> onAgain;
  std::function<void(const QString& password)> onPassword;

private:
  QLabel* m_text;
  QPushButton* m_again = nullptr;
  QPushButton* m_open = nullptr;
  QPushButton* m_sample = nullptr;
  QWidget* m_passwordRow = nullptr;
  QLineEdit* m_password = nullptr;
};

} // namespace folivex
