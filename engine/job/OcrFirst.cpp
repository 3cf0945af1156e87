#include "engine/job/OcrFirst.h"

#include "platform/FileSystem.h"
#include "platform/OutsideProgram.h"

#include <QDir>
#include <QFileInfo>

namespace folivex {

QString ocrCopyPath(const QString& source, const QString& temporaryFolder) {
  return QDir(temporaryFolder).filePath(QFileInfo(source).fileName()) +
         QStringLiteral("_fxs_ocr.pdf");
}

bool OcrFirst(const QString& source, const QString& temporaryFolder, RunState& state,
              Operator& person) {
  state.ocrFile = ocrCopyPath(source, temporaryFolder);
  if (!platform::isTrustedPrivateFile(state.ocrFile)) {
    // Whoever put it there would choose the words that name the outputs.
    person.note(QStringLiteral("%1: is a link or another user's file and is not used; the file "
                               "itself is read")
                    .arg(state.ocrFile));
    state.ocrFile.clear();
    return false;
  }
  if (QFileInfo::exists(state.ocrFile)) {
    person.note(QStringLiteral("%1: the OCR'd copy of an earlier run is used").arg(state.ocrFile));
    return true;
  }
  person.progress({QStringLiteral("Please wait... OCR'ing pdf first."), 0, 0, 0});

  platform::OutsideProgram program;
  program.program = platform::companionProgram(QStringLiteral("Scanlite"));
  program.arguments = {source, state.ocrFile, QStringLiteral("0")};
  QString reason = QStringLiteral("the OCR program Scanlite was not found");
  if (!program.program.isEmpty()) {
    const platform::ProgramEnd end = platform::runOutsideProgram(program, [&] {
      person.handlePendingEvents();
      return state.userStop;
    });
    reason = end.errorOutput;
  }
  if (QFileInfo::exists(state.ocrFile)) {
    return true;
  }
  if (!state.userStop) {
    person.note(QStringLiteral("%1: no OCR'd copy could be made, the file itself is read: %2")
                    .arg(source, reason));
  }
  state.ocrFile.clear();
  return false;
}

} // namespace folivex
