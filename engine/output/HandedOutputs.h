// HandedOutputs: what the split library took over and writes beside the engine's work.
#pragma once

#include "engine/naming/OutputReservation.h"

#include <deque>
#include <vector>

namespace folivex {

class CSplitPdfInit;

/// The outputs whose fate is not known yet, in the order in which they were handed over.
class HandedOutputs {
public:
  explicit HandedOutputs(CSplitPdfInit& split) : m_split(split) {}

  /// The library has just taken this output over.
  void add(const ReservedOutput& output) { m_entries.push_back({output, {}, false}); }

  /// Whether the file at this path is on its way.
  bool holds(const QString& path) const;
  bool isEmpty() const { return m_entries.empty(); }

  struct Fate {
    ReservedOutput output;
    QString problem; ///< why it could not be written
    bool failed = false;
  };

  /// Takes the outputs that are written or have failed by now, in their order. Waits for the others
  /// at most this long.
  std::vector<Fate> settled(int milliseconds);

private:
  void takeFailures();

  CSplitPdfInit& m_split;
  std::deque<Fate> m_entries;
};

} // namespace folivex
