// MainWindow: the setup of one split, and the commands that use it.
#pragma once

#include "app/MainMenus.h"
#include "app/Program.h"
#include "app/RecentSetups.h"
#include "app/WindowParts.h"
#include "app/groups/PickTargets.h"
#include "app/groups/RulesPane.h"
#include "engine/base/Operator.h"
#include "widgets/Pace.h"

#include <QDialog>

class QPushButton;

namespace folivex {

class CStatusDlg;
class NewsLine;
class RunLine;
class SetupDialog;

/// Shows and edits the store's copy of the settings, and is the person that the engine talks to.
/// While a run is on, the window lives on at every step of it, and nothing but Stop can be used.
class MainWindow : public QDialog, public Operator {
public:
  /// Both must outlive the window.
  MainWindow(Dialogs& dialogs, WindowMemory& memory);
  ~MainWindow() override;

  /// To be called before start().
  void setParts(WindowParts parts);

  /// Loads libraries and default setup, then does what the arguments ask for.
  void start(const CommandLine& line);

  Program& program() { return m_program; }

  /// Findings, message boxes that were remembered, and the status, the newest at the end.
  QStringList lastTold() const;
  /// A message box was shown, here or by another window.
  void remember(const QString& text);

  /// Shows a line above the settings that stays until it is answered or put away. `onMore` is what
  /// its button does.
  void tellNews(const QString& text, const std::function<void()>& onMore);

  /// Shows the store's settings: another part has changed them.
  void refresh() { showSetup(); }

  // Commands that other windows give.
  void process();
  void processList();
  /// The settings as they stand in the window, those of the dialogs included.
  SplitSetup currentSetup() const;

  /// What a word or an area picked on a page can be meant for: see pickTargetTexts(). What is taken
  /// stands in the fields at once; the sentence returned says so.
  QString takePickedWord(int target, const PickedPlace& place);
  QString takePickedRange(int target, const PickedArea& area);

  void message(const QString& text) override;
  Answer question(const QString& text, const QString& caption) override;
  void note(const QString& text) override;
  void print(const QString& text) override;
  void progress(const Progress& progress) override;
  void handlePendingEvents() override;
  void openDocument(const QString& path) override;

  void reject() override; ///< Escape and the close box: the close command

protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  enum class Shown { StatusDialog, StatusLine };
  /// While one lives, a run is on.
  class Running;

  void buildControls();
  QWidget* buildButtons();
  QPushButton* commandButton(Command command, const QString& text, const char* name);
  void connectMenus();
  void command(Command command);

  void showSetup();
  void tellSetupFile();
  void loadSetup();
  void loadSetupFile(const QString& path);
  void saveSetup();
  void tellResult(const SetupResult& result);
  void keepUsed(const QString& path);

  QString setupStartPath() const;

  bool readyFor(SetupPurpose purpose);
  void runCommandLine(const CommandLine& line);
  void mailOutputs();
  void mailBatchSource();
  void mailUnattended(const SplitSetup& setup);
  void takeSetup();
  void stop();
  void showMatches();
  void plan();
  void viewPage();
  void listPage();
  int askForPage();

  template <typename Dialog> void editIn();
  void editWith(SetupDialog& dialog);
  void openHelp();
  void about();

  Dialogs& m_dialogs;
  WindowMemory& m_memory;
  RecentSetups m_recent;
  WindowParts m_parts;
  Program m_program;
  std::unique_ptr<UnattendedDelivery> m_mail; ///< of the run that is on
  bool m_isRunning = false;
  bool m_usesStatusDialog = false;
  int m_lastPage = 1;
  Pace m_eventPace;
  Pace m_paintPace;

  std::unique_ptr<MainMenus> m_menus;
  RulesPane* m_panel = nullptr;
  NewsLine* m_news = nullptr;
  RunLine* m_runLine = nullptr;
  CStatusDlg* m_status = nullptr;
};

} // namespace folivex
