// ActivityLine: the foot of the main window: what is going on, how far it is, how long it will
// still take, the one Stop, and what was found along the way.
#pragma once

#include "engine/base/Operator.h"
#include "widgets/Pace.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace folivex {

class ActivityLine : public QWidget {
public:
  explicit ActivityLine(QWidget* parent);

  /// Work begins: what the last one told goes. `passes` is how often it goes over the pages: twice
  /// where outputs are written behind the last page. The bar goes from left to right once.
  void begin(const QString& text, int passes = 1);
  void end();
  /// Stop was asked for: said until end().
  void tellStopping();
  void setStatus(const QString& text);
  /// What keeps work from beginning; said until it is set right.
  void tellProblem(const QString& text);
  void forgetProblem();
  /// Cheap: what is shown is changed at most twenty times a second.
  void progress(const Progress& progress);
  /// Pages are read beside everything else; there is nothing to stop.
  void tellReading(int pagesRead, int pageCount);

  /// Findings collect above the status line.
  void note(const QString& text);
  void clearNotes();
  /// Something was told in another place, such as a message box.
  void remember(const QString& text);
  /// What was told last, the newest at the end; earlier runs included.
  QStringList lastTold() const;

  QPushButton* stopButton() const { return m_stop; }

private:
  void fitNotes();
  void showShare(int done, int all);

  QLabel* m_status;
  QProgressBar* m_bar;
  QLabel* m_timeLeft;
  QPushButton* m_stop;
  QPlainTextEdit* m_notes;
  QStringList m_told;
  Pace m_pace;
  QElapsedTimer m_elapsed;
  bool m_tellsProblem = false;
  bool m_isWorking = false;
  bool m_isStopping = false;
  int m_passes = 1;
  int m_pass = 0;
  int m_done = 0; ///< pages of the pass that are behind it
};

} // namespace folivex
