// JobDriver: prepares a run, runs it and tells how it ended.
#pragma once

#include "engine/job/BatchRun.h"
#include "engine/job/Operator.h"
#include "engine/job/RunState.h"
#include "engine/job/SplitPlan.h"
#include "engine/naming/NameList.h"
#include "engine/output/EmailRecords.h"
#include "engine/output/PageAccount.h"
#include "engine/setup/SetupStore.h"

#include <functional>
#include <memory>
#include <optional>

namespace folivex {

class CAppendPdfInit;
class CPDFTextDumpInit;
class CSplitPdfInit;
class MatchObserver;
class OutputFileList;
class OutputWriter;
class Reports;
class SourceFile;

/// Runs jobs with the settings of a SetupStore, one at a time, on the caller's thread. The person
/// is kept alive by Operator::handlePendingEvents() at every step; Stop() may be called from there.
class JobDriver {
public:
  struct Libraries {
    CPDFTextDumpInit& text;
    CSplitPdfInit& split;
    CAppendPdfInit& append;
  };

  JobDriver(SetupStore& store, Libraries libraries, Operator& person);

  /// Processes the file named in `FILENAME`. Everything that a person should know is told; the
  /// result is RunError::None, or the code that an unattended program ends with.
  RunError StartProcessing();

  /// Makes what finds the addresses that outputs are mailed to, for runs with `EMAILENABLE`.
  using AddressReaderMaker = std::function<std::unique_ptr<AddressReader>(const SplitSetup&)>;
  void setAddressReaderMaker(AddressReaderMaker maker) { m_addressReader = std::move(maker); }

  /// What StartProcessing() would do. Nothing is written, deleted, numbered or saved; the pages are
  /// read, named and reserved by the same code.
  SplitPlan Plan();

  /// Why a search found nothing: one line for each of the words that come nearest to what was
  /// looked for, the nearest first. Reads the file named in `FILENAME` once more.
  QStringList NearestWords();

  /// Walks the matches of the file named in `FILENAME` without writing anything.
  void ShowMatches(MatchObserver& observer);

  /// Writes the words of one page (from 1) of the file named in `FILENAME` with their positions,
  /// and opens the listing.
  void ListPagePositions(int page);

  /// Processes every row in use, in automation mode. `onProcessed`, which may be empty, is told of
  /// each source that has outputs, while emails() are still its own.
  BatchResult ProcessBatch(BatchRows& rows,
                           const std::function<void(const QString& source)>& onProcessed = {});

  /// Several sources are processed as one piece of work, until endBatch():
  /// `OTHERSETTINGSREMOVEFILES` then clears an output folder before the first of them only, and
  /// none of the sources with it, and the list of names goes on from source to source.
  void beginBatch(const QStringList& sources);
  void endBatch();

  /// Asks the run to end at the next page.
  void Stop();

  /// The program was started with arguments: a failure ends it.
  void setCommandLine(bool on) { m_state.commandLine = on; }
  /// No message boxes: what they would say is told as notes.
  void setAutomation(bool on) { m_state.automation = on; }

  const RunState& state() const { return m_state; }
  const PageAccount& account() const { return m_account; }
  const EmailRecords& emails() const { return m_emails; }

private:
  void resetState();
  void tell(const QString& text);
  RunError fail(RunError error, const QString& text);
  std::unique_ptr<AddressReader> addressReaderFor(const SplitSetup& setup) const;
  void clearFolder(const QString& outputFolder, const QString& source);
  bool clearsFolder(const QString& outputFolder) const;
  QStringList sourcesToKeep(const QString& source) const;
  void saveDefaultSetup();
  void processFile(const SplitSetup& setup, const QString& source, Reports& reports);
  int openSource(SourceFile& file, const SplitSetup& setup, const QString& source);
  NameList& nameList(const SplitSetup& setup);
  void closeNameList();
  void recognise(SourceFile& file, const SplitSetup& setup, const QString& source);
  void settleCounts(const OutputWriter& writer);
  void tellFileList(OutputFileList& list);
  void tellEnd(const Reports& reports);
  void tellShowEnd();
  int openForReading(SourceFile& file, const QString& source);
  const QString& scannedFile(const QString& source) const;

  SetupStore& m_store;
  Libraries m_libraries;
  Operator& m_person;
  RunState m_state;
  PageAccount m_account;
  EmailRecords m_emails;
  AddressReaderMaker m_addressReader;
  bool m_inBatch = false;
  QStringList m_batchSources;
  QStringList m_clearedFolders; ///< of the batch
  bool m_folderWritable;
  int m_writtenFiles = 0;
  bool m_outputsFailed = false;
  std::optional<NameList> m_names; ///< of the run, or of all runs of a batch
};

/// Empty, or why these settings cannot be run together.
QString contradictionIn(const SplitSetup& setup);

} // namespace folivex
