// OCR before a run: a copy of the source with a text layer.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"

namespace folivex {

/// Where the OCR'd copy of `source` lies: in `temporaryFolder`, named after the source.
QString ocrCopyPath(const QString& source, const QString& temporaryFolder);

/// Makes the OCR'd copy of `source` with the OCR program and keeps its path in RunState::ocrFile. A
/// copy that exists already is used as it is, unless it is a link or
/// another user's. Returns whether there is a copy; without one the
/// reason is told and RunState::ocrFile is empty. A Stop ends the OCR program.
bool OcrFirst(const QString& source, const QString& temporaryFolder, RunState& state,
              Operator& person);

} // namespace folivex
