// WindowParts: what other parts of the program do for the main window.
#pragma once

#include "engine/job/JobDriver.h"
#include "engine/setup/SplitSetup.h"

#include <functional>

namespace folivex {

/// A part that is not there leaves its function empty; the commands that need it are then disabled.
/// All are called on the thread of the windows.
struct WindowParts {
  /// Opens the window of the batch list.
  std::function<void()> prepareList;
  /// The rows of a batch run; null while no list was prepared.
  std::function<BatchRows*()> batchRows;
  /// A batch run begins and ends: the list is not to be changed meanwhile. May be empty.
  std::function<void(bool running)> batchRunning;

  /// Opens the list of mails with a list file that the person chooses.
  std::function<void()> loadEmailList;
  /// Before a split: a run of the same work may have left mails. True when the person goes on with
  /// those, or wants nothing done. May be empty, as the three below.
  std::function<bool(const SplitSetup& setup)> goOnMailing;
  /// A split has ended with mails to send (`EMAILENABLE`).
  using Mailing = std::function<void(JobDriver& driver, const SplitSetup& setup)>;
  Mailing mailOutputs;
  /// One source of a batch has; the batch goes on afterwards.
  Mailing mailBatchSource;
  /// The batch whose sources had mails to send has ended.
  std::function<void()> mailBatchEnd;
  /// Of the mails of the last run those that wait, since their list was cancelled.
  struct WaitingMails {
    std::function<int()> count;
    std::function<void()> show;
    std::function<void()> send;   ///< if the person agrees
    std::function<void()> forget; ///< another run begins
  } waitingMails;
  /// Sends one mail to see whether the settings are right, and says what came of it.
  std::function<void(const SplitSetup& setup)> sendTest;

  std::function<void(const QString& topic)> openHelp;
  std::function<void()> problemReport;
  /// Opens the settings of the update check.
  std::function<void()> updateCheck;
};

} // namespace folivex
