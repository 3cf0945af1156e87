// HandedOutputs: what the split library took over and writes beside the engine's work.
#pragma once

#include "engine/naming/OutputReservation.h"
#include "engine/output/WrittenFile.h"

#include <deque>
#include <utility>
#include <vector>

namespace folivex {

class CSplitPdfInit;

/// A file for the split library to write: an output, or what is to be added to one.
struct HandedFile {
  QString path;
  std::vector<ReservedOutput> ranges; ///< of one output, in their order; never empty
  bool isNew = true;                  ///< nothing was there

  bool isAddition() const { return path != ranges.front().path; }
};

/// The files whose fate is not known yet, in the order in which they were handed over.
class HandedOutputs {
public:
  explicit HandedOutputs(CSplitPdfInit& split) : m_split(split) {}

  /// The library has just taken this file over.
  void add(HandedFile file) { m_files.push_back(std::move(file)); }

  /// Whether the file at this path is on its way.
  bool holds(const QString& path) const;
  bool isEmpty() const { return m_files.empty(); }

  struct Fate {
    HandedFile file;
    int code = 0;        ///< CSplitPdfInit::ok when it is written
    QString problem;     ///< why it could not be
    WrittenFile written; ///< what lies there when it is
  };

  /// Takes the files that are written or have failed by now, in their order. Waits for the others
  /// at most this long.
  std::vector<Fate> settled(int milliseconds);

private:
  CSplitPdfInit& m_split;
  std::deque<HandedFile> m_files;
};

} // namespace folivex
