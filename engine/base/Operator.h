// Operator: the engine's one way to a person.
#pragma once

#include "engine/base/RunFinding.h"

#include <QString>

class QJsonObject;

namespace folivex {

enum class Answer { Yes, No, Cancel };

/// What is done with a source, one after the other.
enum class Phase {
  Reading,
  Writing, ///< of what waited for the last page
  Sending
};

/// What a run shows while it works.
struct Progress {
  QString text;      ///< the status text as the engine words it
  int page = 0;      ///< page (or mail) being processed, from 1; 0 when not known
  int pageCount = 0; ///< pages (or mails) of the phase, 0 when not known
  int outputs = 0;   ///< output files so far
  Phase phase = Phase::Reading;
};

/// Who runs the engine: a window, a terminal, or nobody. The engine decides when a message is due
/// (in automation mode none is); the operator decides how it looks.
class Operator {
public:
  virtual ~Operator() = default;

  /// A message that a person confirms.
  virtual void message(const QString& text) = 0;
  /// A question with its caption; without a person the answer is No.
  virtual Answer question(const QString& text, const QString& caption) = 0;
  /// A finding that does not stop the work (a damaged page, a protected source). Never waits, and
  /// is told in automation mode too.
  virtual void note(const QString& text) = 0;
  /// The same, told to a program that reads along, too.
  void found(RunFinding kind, const QString& text) { found(Finding{kind, text}); }
  void found(const Finding& finding);
  /// A result that was asked for (a plan), in lines ending in LF.
  virtual void print(const QString& text) = 0;
  virtual void progress(const Progress& progress) = 0;
  /// Of several sources that are one piece of work, one begins; counted from 1.
  virtual void beginSource(int /*source*/, int /*sources*/) {}
  /// Lets a window handle what has come in. Called by the engine at every step of long work.
  virtual void handlePendingEvents() = 0;
  /// Opens a finished file (a report, the listing) for the person to read.
  virtual void openDocument(const QString& path) = 0;

  /// Whether a program reads along. Else nothing need be kept for record().
  virtual bool wantsRecords() const { return false; }
  /// What that program is told: one object a thing that happened, see RecordStream.
  virtual void record(const QJsonObject& /*record*/) {}
};

} // namespace folivex
