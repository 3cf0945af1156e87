// OutputWriter: reserved outputs become files.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"
#include "engine/naming/OutputReservation.h"
#include "engine/output/HandedOutputs.h"
#include "engine/output/PageAccount.h"
#include "engine/setup/SplitSetup.h"

#include <QHash>
#include <QSet>

#include <deque>
#include <vector>

namespace folivex {

class CAppendPdfInit;
class CSplitPdfInit;
class FolderLocks;

/// Writes one output after the other, with the split library or with the external command. Every
/// output is counted in RunState::outputCount when it is taken on, and its pages in the PageAccount
/// when its fate is known. A failed output does not end the run (see RunError for what does); it
/// leaves nothing half-written. The split library may write beside the engine's further work:
/// finish() waits for it.
///
/// Where outputs are appended, ranges are held until finish(): those that go to one file are split
/// together and, when the file exists, joined to it once, so that it is rewritten once a source. A
/// Stop before finish() ends the reading only, what was taken on until then is written; one that
/// comes later leaves out the files not yet begun.
class OutputWriter : public OutputList {
public:
  struct Libraries {
    CSplitPdfInit& split;
    CAppendPdfInit& append;
  };

  OutputWriter(const SplitSetup& setup, RunState& state, Libraries libraries, Operator& person,
               PageAccount& account);

  /// Locks the folder of each output before it is written; must outlive the writer.
  void setFolderLocks(FolderLocks& folders) { m_folders = &folders; }

  /// The source of the outputs that follow; `totalPages` is the page count both libraries agree on.
  void startSource(const QString& source, int totalPages);

  void output(const ReservedOutput& output) override;
  void replaced(const ReservedOutput& lost) override;

  /// Writes what is held and waits until the fate of every output is known. To be called when the
  /// last one has come.
  void finish();

  /// Files that were really written since startSource(), after finish(); one that was appended to
  /// counts once.
  int writtenFiles() const { return static_cast<int>(m_written.size()); }

  /// Outputs that failed, or that a Stop left out.
  QSet<QString> unwrittenPaths() const;
  /// Whether the pages of this range from `firstPage` on are not in the file at `path` after all.
  bool isMissing(const QString& path, int firstPage) const;
  /// How many of those that RunState::outputCount counts came to nothing.
  int failedOutputs() const { return m_failedOutputs; }

private:
  using Ranges = std::vector<ReservedOutput>;

  void makeFolderOf(const QString& path);
  bool lockFolderOf(const ReservedOutput& output);
  void runExternalCommand(const ReservedOutput& output);
  void writeWithLibrary(const ReservedOutput& output);
  void hold(const ReservedOutput& output);
  void writeHeld(Ranges ranges);
  void leaveOut(const Ranges& ranges);
  void handOver(HandedFile file);
  void settle(int milliseconds);
  void waitForHanded();
  void join(const HandedFile& addition);
  void missed(const HandedFile& file, const QString& reason);
  void appendFailed(const HandedFile& addition);
  void wrote(const ReservedOutput& output);
  void failed(const ReservedOutput& output, const QString& reason);

  const SplitSetup& m_setup;
  RunState& m_state;
  Libraries m_libraries;
  Operator& m_person;
  PageAccount& m_account;
  FolderLocks* m_folders = nullptr;
  HandedOutputs m_handed;
  FileSystemRules m_rules = FileSystemRules::ofThisSystem();
  std::deque<Ranges> m_held;             ///< by output, as the outputs came first
  QHash<QString, std::size_t> m_heldFor; ///< places in m_held, by comparable path
  bool m_appendEndsRun = false;
  QString m_source;
  int m_totalPages = 0;
  struct Pages {
    int first;
    int last;
  };
  QHash<QString, Pages> m_written;       ///< by path: the pages that it got last
  QHash<QString, QSet<int>> m_unwritten; ///< first pages, by path
  int m_failedOutputs = 0;
};

} // namespace folivex
