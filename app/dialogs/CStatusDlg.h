// CStatusDlg: how far a run is, and the button that ends it.
#pragma once

#include "engine/base/Operator.h"
#include "widgets/Pace.h"

#include <QDialog>
#include <QElapsedTimer>

#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace folivex {

/// Shown over the main window while a run is on, without an event loop of its own: the run keeps it
/// alive through Operator::handlePendingEvents().
class CStatusDlg : public QDialog {
public:
  static constexpr int stopped = 1; ///< result after Stop

  explicit CStatusDlg(QWidget* parent = nullptr);

  /// A run begins: `title` says which, `source` is the file it works on.
  void begin(const QString& title, const QString& source);
  /// Cheap: what is shown is changed at most twenty times a second.
  void progress(const Progress& progress);
  void end();

  /// Stop, Escape or the close box, once for each run.
  std::function<void()> onStop;

  void reject() override;

private:
  void buildControls();
  void display();

  Progress m_progress;
  Pace m_pace;
  QElapsedTimer m_elapsed;
  bool m_isStopping = false;

  QLabel* m_source = nullptr;
  QLabel* m_text = nullptr;
  QProgressBar* m_bar = nullptr;
  QLabel* m_page = nullptr;
  QLabel* m_outputs = nullptr;
  QLabel* m_timeLeft = nullptr;
  QPushButton* m_stop = nullptr;
};

} // namespace folivex
