// EndPanel: how a run ended, and what can be done with its outputs.
#pragma once

#include "app/RunSummary.h"

#include <QFrame>

#include <functional>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace folivex {

/// Hidden until a run has ended; Escape inside it puts it away. It takes the cursor from nobody. A
/// screen reader is told of it as of an alert.
class EndPanel : public QFrame {
public:
  explicit EndPanel(QWidget* parent);

  void tell(const RunEnd& end);
  void putAway();
  bool isWarning() const { return m_isWarning; }

  /// A folder or a report is to be opened outside the program.
  std::function<void(const QString& path)> onOpen;
  std::function<void()> onShowList; ///< of mails that wait
  std::function<void()> onSendMails;
  std::function<void()> onPutAway; ///< may be empty

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QWidget* buildButtons();
  void showFindings(const QStringList& findings);

  QString m_folder;
  QString m_report;
  bool m_isWarning = false;
  QLabel* m_icon;
  QLabel* m_headline;
  QLabel* m_told;
  QLabel* m_facts;
  QPlainTextEdit* m_findings;
  QPushButton* m_openFolder = nullptr;
  QPushButton* m_viewReport = nullptr;
  QPushButton* m_showList = nullptr;
  QPushButton* m_sendMails = nullptr;
};

} // namespace folivex
