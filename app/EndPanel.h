// EndPanel: how a run ended, and what can be done with its outputs.
#pragma once

#include "app/RunSummary.h"

#include <QFrame>

#include <functional>
#include <utility>
#include <vector>

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
  /// So many mails of that run wait now.
  void tellMails(int mails);
  /// Another run is being prepared: the panel goes, unless mails wait in it.
  void giveWay() { setVisible(isVisible() && m_end.mails > 0); }
  bool isWarning() const { return m_isWarning; }

  /// A folder or a report is to be opened outside the program.
  std::function<void(const QString& path)> onOpen;
  std::function<void()> onShowList; ///< of mails that wait
  std::function<void()> onSendMails;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QWidget* buildButtons();
  void showFindings();

  RunEnd m_end;
  bool m_isWarning = false;
  QLabel* m_icon;
  QLabel* m_headline;
  QLabel* m_told;
  QLabel* m_facts;
  QPlainTextEdit* m_findings;
  std::vector<std::pair<QPushButton*, std::function<bool()>>>
      m_buttons; ///< and when they mean something
};

} // namespace folivex
