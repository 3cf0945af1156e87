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
  /// Nothing to be done but to wait.
  void showWait(const QString& text);
  /// Something that another try may get over.
  void showProblem(const QString& text);
  /// What was typed stays for another try; it goes when `isNew` says that it was another file's.
  void askForPassword(const QString& text, bool isNew);

  std::function<void()> onOpenWanted;
  std::function<void()> onSampleWanted;
  std::function<void()> onAgain;
  std::function<void(const QString& password)> onPassword;

private:
  enum class Answers { None, Start, Again, Password };
  void show(const QString& text, Answers answers);

  QLabel* m_text;
  QWidget* m_start = nullptr;
  QPushButton* m_again = nullptr;
  QWidget* m_passwordRow = nullptr;
  QLineEdit* m_password = nullptr;
};

} // namespace folivex
