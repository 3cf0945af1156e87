#include "engine/job/OcrFirst.h"

#include "engine/job/OcrCopy.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"
#include "platform/FileSystem.h"
#include "platform/OutsideProgram.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>

namespace folivex {

namespace {

QString ocrProgram() {
  return platform::companionProgram(QStringLiteral("Scanlite"));
}

QString noProgramText() {
  return QStringLiteral("the OCR program Scanlite was not found");
}

/// Whoever put a file of others there would choose the words that name the outputs. Empty, or why
/// the copy at this path is not used.
QString distrust(const QString& path) {
  for (const QString& file : {path, path + QStringLiteral(".source")}) {
    if (!platform::isTrustedPrivateFile(file)) {
      return QStringLiteral("%1: is a link or another user's file and is not used; the file "
                            "itself is read")
          .arg(file);
    }
  }
  return {};
}

QString noCopyText(const QString& source, const QString& problem) {
  return QStringLiteral("%1: no OCR'd copy could be made, the file itself is read: %2")
      .arg(source, problem);
}

/// Empty when the program made a copy, else why not. What it says about a copy goes to `person`.
QString recognise(const QString& source, OcrCopy& copy, Operator& person,
                  const std::function<bool()>& tick) {
  platform::OutsideProgram program;
  program.program = ocrProgram();
  if (program.program.isEmpty()) {
    return noProgramText();
  }
  program.arguments = {source, copy.placeToMake(), QStringLiteral("0")};
  const platform::ProgramEnd end = platform::runOutsideProgram(program, tick);
  // A program that was ended may leave half a copy.
  if (end.started && end.exitCode == 0 && copy.takeMade()) {
    for (const QString& line : end.errorOutput.split(u'\n', Qt::SkipEmptyParts)) {
      person.found(RunFinding::Recognition, line);
    }
    return {};
  }
  return end.errorOutput.isEmpty()
             ? QStringLiteral("the OCR program ended with %1 and left none").arg(end.exitCode)
             : end.errorOutput;
}

} // namespace

bool isRecognised(const SplitSetup& setup) {
  return setup.ocrFirst && !splitTraitsOf(setup.pageExtract).fromBookmarks;
}

QString ocrCopyPath(const QString& source, const QString& temporaryFolder) {
  return QDir(temporaryFolder).filePath(QFileInfo(source).fileName()) +
         QStringLiteral("_fxs_ocr.pdf");
}

bool OcrFirst(const QString& source, const QString& temporaryFolder, RunState& state,
              Operator& person) {
  state.ocrFile.clear();
  state.ocrHold.reset();
  const QString path = ocrCopyPath(source, temporaryFolder);
  if (const QString problem = distrust(path); !problem.isEmpty()) {
    person.found(RunFinding::Recognition, problem);
    return false;
  }
  const auto copy =
      std::make_shared<OcrCopy>(source, path, [&person] { person.handlePendingEvents(); });
  const auto wait = [&] {
    constexpr unsigned long waitStepMs = 20;
    person.progress({QStringLiteral("Please wait... another run is OCR'ing this pdf."), 0, 0, 0});
    person.handlePendingEvents();
    QThread::msleep(waitStepMs);
    return !state.userStop;
  };
  if (copy->isThere(wait)) {
    person.found(RunFinding::Recognition,
                 QStringLiteral("%1: the OCR'd copy of an earlier run is used").arg(path));
  } else if (state.userStop) {
    return false;
  } else {
    person.progress({QStringLiteral("Please wait... OCR'ing pdf first."), 0, 0, 0});
    const QString problem = recognise(source, *copy, person, [&] {
      person.handlePendingEvents();
      return state.userStop;
    });
    if (!problem.isEmpty()) {
      if (!state.userStop) {
        person.found(RunFinding::Recognition, noCopyText(source, problem));
      }
      return false;
    }
  }
  state.ocrFile = copy->path();
  state.ocrHold = copy;
  return true;
}

OcrFinding findOcrCopy(const QString& source, const QString& temporaryFolder) {
  const QString path = ocrCopyPath(source, temporaryFolder);
  if (const QString problem = distrust(path); !problem.isEmpty()) {
    return {nullptr, problem};
  }
  if (QFileInfo::exists(path)) {
    auto copy = std::make_shared<OcrCopy>(source, path, [] {});
    if (copy->isThere([] { return false; })) {
      return {std::move(copy), {}};
    }
  }
  return {nullptr, ocrProgram().isEmpty() ? noCopyText(source, noProgramText()) : QString()};
}

} // namespace folivex
