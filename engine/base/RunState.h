// RunState: the run in progress.
#pragma once

#include "engine/base/PagePart.h"

#include <QString>

#include <memory>

namespace folivex {

/// The negative codes that a run records, and with which an unattended program ends.
enum class RunError {
  None = 0,
  SourceMissing = -1,
  SetupMissing = -2,
  TextReport = -3,
  CsvReport = -4,
  SetupFile = -5,
  Contradiction = -6, ///< settings that exclude each other
  Append = -11,
  Unreadable = -12,    ///< the source is no readable PDF, or is protected
  OutputFailed = -13,  ///< at least one output could not be written
  MailFailed = -14,    ///< at least one mail could not be sent, or may not have arrived
  SourceChanged = -15, ///< while it was read; what was made of it is taken away again
  FolderBusy = -16     ///< another run is at work in the output folder, and cannot be waited for
};

/// State of the run in progress. Page indexes count from 0.
struct RunState {
  int pendingStart = -1;   ///< first page of the range that is open, -1 when none
  int outputCount = 0;     ///< output files handed to the writer; at the end, those written
  int rangeCount = 0;      ///< ranges saved
  int emptiedRanges = 0;   ///< ranges of which no page was left
  int rangesElsewhere = 0; ///< ranges that are no output of `part`
  bool isRead = false;     ///< no page is left to read; what waited for that is written
  bool userStop = false;
  bool abortRun = false;
  bool showOnly = false; ///< matches are shown, nothing is written
  int matchesShown = 0;
  bool automation = false;       ///< no message boxes
  PagePart part;                 ///< the outputs that are this run's
  bool commandLine = false;      ///< started with arguments: a failure ends the program
  QString ocrFile;               ///< the OCR'd copy of the source, empty when there is none
  std::shared_ptr<void> ocrHold; ///< as long as it lives, nobody changes that copy
  RunError error = RunError::None;
  QString
      problem; ///< why, where that is one sentence; empty where the notes tell it output by output

  bool mustEnd() const { return userStop || abortRun; }
};

} // namespace folivex
