// ProgramWindows: the main window with all the windows that belong to it.
#pragma once

#include "app/MainWindow.h"
#include "app/program/HelpKey.h"
#include "widgets/HeardDialogs.h"

#include <memory>

namespace folivex {

class CBatchList;
class EmailSession;
class HelpWindow;
class UpdateCheck;
struct UpdateResult;

/// Makes each window when it is first asked for, and ties it to the main window.
class ProgramWindows {
public:
  /// Both must outlive this.
  ProgramWindows(Dialogs& dialogs, WindowMemory& memory);
  ~ProgramWindows();
  ProgramWindows(const ProgramWindows&) = delete;
  ProgramWindows& operator=(const ProgramWindows&) = delete;

  MainWindow& main() { return m_main; }

  /// Loads libraries and default setup, does what the arguments ask for, and looks for a newer
  /// version where that is wanted and due.
  void start(const CommandLine& line);

private:
  WindowParts parts();
  void prepareList();
  EmailSession& emails();
  void openHelp(const QString& topic);
  void reportProblem();
  void editUpdateCheck();
  void lookForUpdate();
  void tellUpdate(const UpdateResult& result);

  HeardDialogs m_dialogs;
  WindowMemory& m_memory;
  MainWindow m_main;
  // What follows uses the libraries of the main window and goes first.
  std::unique_ptr<UpdateCheck> m_updates;
  std::unique_ptr<CBatchList> m_list;
  std::unique_ptr<EmailSession> m_emails;
  std::unique_ptr<HelpWindow> m_help;
  HelpKey m_helpKey;
};

} // namespace folivex
