// SavedPlan: a plan that an earlier run told in records, to be carried out by runs of its parts.
#pragma once

#include "engine/job/SplitPlan.h"
#include "platform/FileStamp.h"

namespace folivex {

struct SplitSetup;

/// What `--json --plan` tells of one source. A run that carries it out reads no page to find out
/// what the outputs are; settings that decide that have done so when it was made.
struct SavedPlan {
  std::vector<PlannedOutput> outputs;
  int pageCount = 0;
  /// Size and last write of the source that was planned; nothing else of it is known.
  platform::FileStamp source;
  QString problem; ///< why it cannot be carried out, with the file's name; empty when it can

  /// Of the source that the setup names, with its output folder as it is meant. The file is not
  /// trusted: each output has to be a PDF in that folder, of pages that are there.
  static SavedPlan load(const QString& file, const SplitSetup& setup);

  /// Whether a source is that of the plan, as far as that shows without reading it.
  bool isOf(const std::optional<platform::FileStamp>& stamp, int pages) const {
    return stamp && stamp->size == source.size && stamp->written == source.written &&
           pages == pageCount;
  }
};

} // namespace folivex
