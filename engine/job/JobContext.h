// JobContext: what every piece of work on a source needs beside its setup.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"

namespace folivex {

class CAppendPdfInit;
class CPDFTextDumpInit;
class CSplitPdfInit;

/// The person and the state of one run, which may be a run that only plans. Owns nothing.
struct RunContext {
  Operator& person;
  RunState& state;

  /// As a message, or in automation mode as a note.
  void tell(const QString& text) const {
    if (state.automation) {
      person.note(text);
    } else {
      person.message(text);
    }
  }
  void tell(RunFinding kind, const QString& text) const {
    if (state.automation) {
      person.found(kind, text);
    } else {
      person.message(text);
    }
  }
  RunError fail(RunError error, const QString& text) const {
    state.error = error;
    state.problem = text;
    tell(runFindingOf(error), text);
    return error;
  }
};

/// With the libraries, whose page-by-page states belong to the thread that runs jobs.
struct JobContext : RunContext {
  struct Libraries {
    CPDFTextDumpInit& text;
    CSplitPdfInit& split;
    CAppendPdfInit& append;
  };

  Libraries libraries;
};

} // namespace folivex
