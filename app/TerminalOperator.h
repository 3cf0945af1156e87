// TerminalOperator: the engine's operator when nobody sits before a window.
#pragma once

#include "engine/base/Operator.h"

#include "engine/report/RecordStream.h"

#include <QElapsedTimer>

#include <functional>

namespace folivex {

/// Writes messages and notes to standard error and, on a terminal, keeps one progress line there:
/// the page a run is at, or what else takes long (mails that go out).
/// It never waits for a person: every question is answered with No.
class TerminalOperator : public Operator {
public:
  /// `stop` is called once when the process is asked to end (Ctrl+C, SIGTERM).
  /// With records on standard output no text goes there.
  TerminalOperator(std::function<void()> stop, RecordStream& records);

  void message(const QString& text) override;
  Answer question(const QString& text, const QString& caption) override;
  void note(const QString& text) override;
  void print(const QString& text) override;
  void progress(const Progress& progress) override;
  void beginSource(int source, int /*sources*/) override { m_records.setSource(source); }
  void handlePendingEvents() override;
  void openDocument(const QString& path) override;
  bool wantsRecords() const override { return m_records.isOpen(); }
  void record(const QJsonObject& record) override { m_records.write(record); }

  /// Takes the progress line off the terminal.
  void clearProgress();

private:
  std::function<void()> m_stop;
  RecordStream& m_records;
  bool m_onTerminal;
  bool m_progressShown = false;
  QElapsedTimer m_sinceProgress;
};

/// Lets Ctrl+C and SIGTERM end a run at the next page in place of killing it in the middle.
void catchSignals();

/// Turns signals about files into ordinary write errors.
void ignoreWriteSignals();

/// One line on standard error.
void tellTerminal(const QString& text);

} // namespace folivex
