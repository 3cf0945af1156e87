// ActivityLine: the foot of the main window: what is going on, how far it is, how long it will
// still take, the one Stop, and what was found along the way.
#pragma once

#include "engine/base/Operator.h"
#include "widgets/Pace.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QWidget>

#include <vector>

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace folivex {

class ActivityLine : public QWidget {
public:
  explicit ActivityLine(QWidget* parent);

  /// Work begins: what the last one told goes. The bar goes from left to right once, with the same
  /// room for each source, and for each phase of it.
  void begin(const QString& text, std::vector<Phase> phases = {Phase::Reading});
  void beginSource(int source, int sources);
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
  std::vector<Phase> m_phases;
  int m_source = 1;
  int m_sources = 1;
  double m_share = 0; ///< of all the work
};

} // namespace folivex
