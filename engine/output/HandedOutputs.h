// HandedOutputs: what the split library took over and writes beside the engine's work.
#pragma once

#include "engine/naming/OutputReservation.h"

#include <deque>
#include <vector>

namespace folivex {

class CSplitPdfInit;

/// A file for the split library to write: an output, or what is to be added to one.
struct HandedFile {
  QString path;
  std::vector<ReservedOutput> ranges; ///< of one output, in their order; never empty

  bool isAddition() const { return path != ranges.front().path; }
};

/// The files whose fate is not known yet, in the order in which they were handed over.
class HandedOutputs {
public:
  explicit HandedOutputs(CSplitPdfInit& split) : m_split(split) {}

  /// The library has just taken this file over.
  void add(HandedFile file) { m_entries.push_back({std::move(file), {}, false}); }

  /// Whether the file at this path is on its way.
  bool holds(const QString& path) const;
  bool isEmpty() const { return m_entries.empty(); }

  struct Fate {
    HandedFile file;
    QString problem; ///< why it could not be written
    bool failed = false;
  };

  /// Takes the files that are written or have failed by now, in their order. Waits for the others
  /// at most this long.
  std::vector<Fate> settled(int milliseconds);

private:
  void takeFailures();

  CSplitPdfInit& m_split;
  std::deque<Fate> m_entries;
};

} // namespace folivex
