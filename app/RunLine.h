// RunLine: the foot of the main window: what is going on, how far it is, and what was found.
#pragma once

#include "engine/base/Operator.h"

#include <QStringList>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QProgressBar;

namespace folivex {

class RunLine : public QWidget {
public:
  explicit RunLine(QWidget* parent);

  /// A run begins: what the last one told goes.
  void begin(const QString& text);
  void end();
  void setStatus(const QString& text);
  void progress(const Progress& progress);
  /// Findings collect above the status line.
  void note(const QString& text);
  void clearNotes();
  /// Something was told in another place, such as a message box.
  void remember(const QString& text);
  /// What was told last, the newest at the end; earlier runs included.
  QStringList lastTold() const;

private:
  void fitNotes();

  QLabel* m_status;
  QProgressBar* m_bar;
  QPlainTextEdit* m_notes;
  QStringList m_told;
};

} // namespace folivex
