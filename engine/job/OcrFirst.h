// OCR before a run: a copy of the source with a text layer.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"

namespace folivex {

class OcrCopy;
struct SplitSetup;

/// Whether the words of a run come from a copy. Bookmarks need no words.
bool isRecognised(const SplitSetup& setup);

/// Where the OCR'd copy of `source` lies: in `temporaryFolder`, named after the source. Beside it
/// the file ".source" says what it was made from.
QString ocrCopyPath(const QString& source, const QString& temporaryFolder);

/// Finds or makes the OCR'd copy of `source` and keeps its path in RunState::ocrFile. A copy is
/// used again only for the very same source: path, size, time of change and bytes are compared.
/// Where another run is using the copy of another source of that name, this one gets a copy of its
/// own, which goes with RunState::ocrHold. Returns whether there is a copy; without one the reason
/// is told and RunState::ocrFile is empty. A Stop ends the OCR program.
bool OcrFirst(const QString& source, const QString& temporaryFolder, RunState& state,
              Operator& person);

/// What there is without making anything.
struct OcrFinding {
  std::shared_ptr<OcrCopy> copy; ///< of an earlier run; null when there is none of this source
  QString whyNot;                ///< none will be made either, and the file itself is read
};
OcrFinding findOcrCopy(const QString& source, const QString& temporaryFolder);

} // namespace folivex
