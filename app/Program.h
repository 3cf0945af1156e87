// Program: what lives as long as the program, without its windows.
#pragma once

#include "app/CommandLine.h"
#include "engine/job/JobDriver.h"
#include "engine/job/LivePlan.h"
#include "engine/job/ResultRecord.h"
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/setup/SetupStore.h"
#include "engine/words/CPDFTextDumpInit.h"

#include <memory>
#include <optional>

namespace folivex {

class UnattendedDelivery;

/// The libraries, the setup and the driver, and what a start with arguments does. A window or a
/// terminal is its Operator.
class Program {
public:
  explicit Program(Operator& person);
  ~Program();

  /// Loads the three libraries in their order. Empty, or the message for the first that did not
  /// load; then nothing else may be called.
  QString loadLibraries();

  /// Loads the default setup file, which is made from the installed example when it is missing.
  void loadDefaultSetup();

  /// Loads a setup file for the runs that follow and tells what there is to tell of it; false when
  /// it could not be read.
  bool loadSetup(const QString& path, LoadMode mode = LoadMode::Full);

  /// Says what there is to say of a load or a save. A save that failed is noted: no box, but not
  /// passed over either.
  void tell(const SetupResult& result);

  /// Does what the arguments ask for. The program ends with the result when `mustEnd` is set, by
  /// "-c" or by a failure; else its window stays, and is used by a person from then on.
  struct Ended {
    bool mustEnd = false;
    int exitCode = 0;
  };
  Ended handleCommandLine(const CommandLine& line);

  /// The close command: saves the settings to the default setup file.
  void close();

  SetupStore& store() { return m_store; }
  const SetupStore& store() const { return m_store; }
  JobDriver& driver() { return *m_driver; }
  /// Mails of runs that nobody watches, as long as one command lasts: see UnattendedDelivery.
  std::unique_ptr<UnattendedDelivery> unattendedMail();

  /// Plans beside the caller's thread. It must go before the program does.
  std::unique_ptr<LivePlan> livePlan(LivePlan::OnState onState);

  /// Only once the libraries are loaded.
  CPDFTextDumpInit& textLibrary() { return *m_text; }
  CSplitPdfInit& splitLibrary() { return *m_split; }
  bool isReady() const { return m_driver != nullptr; }

private:
  std::optional<int> performAll(const CommandLine& line);
  std::optional<int> perform(const CommandAction& action);
  std::optional<int> process(const CommandAction& action);
  QString loadAll();
  void note(const QString& text);
  void keepCode(int code) { m_exitCode = m_exitCode == 0 ? code : m_exitCode; }
  std::optional<int> loadNamedSetup();
  std::optional<int> prepare(const CommandAction& action);
  void beginSource(const QString& path);
  std::optional<int> endSource(const SourceResult& result, bool mustEnd);
  std::optional<int> runOne(const QString& path);
  Ended split(SourceResult& result);
  /// Of a source that a run before has split and not mailed to its end: the code of going on with
  /// that.
  std::optional<int> goOnMailing(SourceResult& result);
  bool mailOutputs(SourceResult& result);
  std::optional<int> sendList(const QString& path);
  Ended planOne(SourceResult& result);
  Ended suggestFor(SourceResult& result);
  void setUnattended(bool on);
  void tellUnused(const CommandLine& line);

  Operator& m_person;
  SetupStore m_store;
  std::unique_ptr<CPDFTextDumpInit> m_text;
  std::unique_ptr<CSplitPdfInit> m_split;
  std::unique_ptr<CAppendPdfInit> m_append;
  std::unique_ptr<JobDriver> m_driver;
  std::unique_ptr<UnattendedDelivery> m_mail; ///< while a command line is worked through
  const CommandLine* m_line = nullptr;        ///< that is worked through
  PlanOutput m_plan = PlanOutput::None;
  QString m_setupPath;
  std::optional<QString> m_password;
  int m_source = 0; ///< of so many
  int m_sources = 0;
  int m_exitCode = 0;
};

} // namespace folivex
