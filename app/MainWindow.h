// MainWindow: one workspace for page, rules and plan, and the commands that use them.
#pragma once

#include "app/MainMenus.h"
#include "app/PaneDocks.h"
#include "app/PlanFeed.h"
#include "app/Program.h"
#include "app/RecentFiles.h"
#include "app/SetupHistory.h"
#include "app/WindowParts.h"
#include "app/groups/RulesPane.h"
#include "engine/base/Operator.h"
#include "widgets/Pace.h"

#include <QMainWindow>

class QPushButton;

namespace folivex {

class ActivityLine;
class EndPanel;
class OfferLine;
enum class Meaning;
class PagePane;
class PageStrip;
class PlanPane;
class SetupDialog;
struct Picked;
struct RunEnd;

/// Shows and edits the store's copy of the settings, and is the person that the engine talks to.
/// While a run is on, the window lives on at every step of it; pages can be looked at, and of the
/// commands nothing but Stop can be used.
class MainWindow : public QMainWindow, public Operator {
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

  /// Shows a line above the page that stays until it is answered or put away. `onMore` is what its
  /// button does.
  void tellNews(const QString& text, const std::function<void()>& onMore);

  /// Shows the store's settings: another part has changed them, as when a setup is loaded.
  void refresh();

  // Commands that other windows give.
  void process();
  void processList();
  /// The settings as they stand in the window, those of the dialogs included.
  SplitSetup currentSetup() const;

  /// The window was closed, and the settings are kept.
  std::function<void()> onClosed;

  void message(const QString& text) override;
  Answer question(const QString& text, const QString& caption) override;
  void note(const QString& text) override;
  void print(const QString& text) override;
  void progress(const Progress& progress) override;
  void beginSource(int source, int sources) override;
  void handlePendingEvents() override;
  void openDocument(const QString& path) override;

protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  void buildPanes();
  QWidget* buildToolBar();
  QPushButton* commandButton(const char* command, const QString& text, const char* name);
  void buildMenus();
  void buildThemes();
  void tellRecent();
  void connectPanes();

  void showSetup();
  void showFile();
  void settingsChanged();
  void change(const SplitSetup& setup, const QString& what);
  void put(const SplitSetup& setup);
  void beginAnew();
  bool isUnsaved() const;
  /// Asks whether changes of a named setup are to be saved. False: nothing is to be done.
  bool mayLeaveSetup();
  void openSample();
  void tellSetupFile();
  void openPdf();
  void takePdf(const QString& path);
  void takeFromOutside(const QStringList& paths);
  void loadSetup();
  void loadSetupFile(const QString& path, LoadMode mode = LoadMode::Full);
  bool isAllowed(const QString& path);
  bool saveSetup();
  void keepUsed(const QString& path);
  QString setupStartPath() const;

  // The plan beside page and rules.
  enum class Consent { Given, Changed, Refused };
  SplitSetup plannedSetup() const;
  void replan();
  void forgetPlan(const QString& reason);
  void showPlan(PlanView& view);
  void tellProgressOfPlan(const LivePlanState& state);
  void tellEffects(const SplitPlan& plan);
  void offerWaysOut(const LivePlanState& state);
  void takeNearWord(const NearWord& word);
  void suggest();
  void offerFound(bool isAsked);
  void offerProposal(std::size_t which);
  void takeProposed(std::size_t which);
  void tellProcess(int files);
  bool awaitPlan();
  Consent askAboutClashes(const QString& text);
  bool isAgreedOn();

  bool readyFor(SetupPurpose purpose);
  void work(const QString& title, const std::function<void()>& job,
            const std::vector<Phase>& phases = {Phase::Reading});
  void split(const QString& title, const SplitSetup& setup,
             const std::function<bool(RunEnd& end)>& job);
  void tellEnd(RunEnd& end);
  void tellWaitingMails();
  void runCommandLine(const CommandLine& line);
  void mailOutputs(const SplitSetup& setup, const WindowParts::Mailing& attended);
  void takeSetup();
  void stop();
  void showMatches();
  void plan();
  void planWhole();
  void recognise();
  void viewPage();
  void listPage();

  template <typename Dialog> void editIn();
  void editWith(SetupDialog& dialog);
  void openHelp();
  void about();

  Dialogs& m_dialogs;
  WindowMemory& m_memory;
  RecentFiles m_recentSetups;
  RecentFiles m_recentPdfs;
  WindowParts m_parts;
  Program m_program;
  std::unique_ptr<UnattendedDelivery> m_mail; ///< of the run that is on
  bool m_isRunning = false;
  Pace m_eventPace;
  SplitSetup m_savedSetup; ///< as loaded or saved last
  SetupHistory m_history;
  RunEnd* m_ending = nullptr; ///< takes what is told of the run that is on

  std::shared_ptr<const SplitPlan> m_shownPlan; ///< of the settings as they are; null while unknown
  bool m_wasReading = false;
  LivePlan::Propose m_propose = LivePlan::Propose::No; ///< until there is an answer
  std::vector<SetupProposal> m_proposals;              ///< the newest
  std::function<void()> m_onStop;                      ///< in place of what Stop does to a run
  std::function<void()> m_onPlanShown;                 ///< of who waits for it

  MainMenus m_menus;
  QMenu* m_viewMenu = nullptr;
  RulesPane* m_rules = nullptr;
  PagePane* m_page = nullptr;
  PageStrip* m_strip = nullptr;
  PlanPane* m_plan = nullptr;
  OfferLine* m_news = nullptr;
  EndPanel* m_end = nullptr;
  ActivityLine* m_activity = nullptr;
  QPushButton* m_setupButton = nullptr;
  QPushButton* m_processButton = nullptr;
  std::unique_ptr<PaneDocks> m_docks;
  std::unique_ptr<PlanFeed> m_feed; ///< null without libraries
};

} // namespace folivex
