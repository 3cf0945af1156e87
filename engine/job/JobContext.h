// JobContext: what every piece of work on a source needs beside its setup.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"

namespace folivex {

class CAppendPdfInit;
class CPDFTextDumpInit;
class CSplitPdfInit;

/// Owns nothing.
struct JobContext {
  struct Libraries {
    CPDFTextDumpInit& text;
    CSplitPdfInit& split;
    CAppendPdfInit& append;
  };

  Libraries libraries;
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
  RunError fail(RunError error, const QString& text) const {
    state.error = error;
    state.problem = text;
    tell(text);
    return error;
  }
};

} // namespace folivex
