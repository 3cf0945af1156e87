// OutputWriter: reserved outputs become files.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"
#include "engine/naming/OutputReservation.h"
#include "engine/output/HandedOutputs.h"
#include "engine/output/PageAccount.h"
#include "engine/setup/SplitSetup.h"
#include "platform/OutsideProgram.h"

#include <QHash>
#include <QSet>

#include <deque>
#include <functional>
#include <vector>

namespace folivex {

class CAppendPdfInit;
class CPDFTextDumpInit;
class CSplitPdfInit;
class FolderLocks;

/// Writes one output after the other, with the split library or with the external command. Every
/// output is counted in RunState::outputCount when it is taken on, and its pages in the PageAccount
/// when its fate is known. A failed output does not end the run (see RunError for what does); it
/// leaves nothing half-written. Where names are not given up to later outputs, the places of
/// outputs were claimed (see ClaimedPlaces): what came there since is never replaced. No output is
/// begun once the source is not the file any more that was opened: that ends the run. What an
/// external command had to write stays in the reports, whatever became of it. The split library may
/// write beside the engine's further work: finish() waits for it.
///
/// Where outputs are appended, ranges are held until finish(): those that go to one file are split
/// together and, when the file exists, joined to it once, so that it is rewritten once a source. A
/// Stop before finish() ends the reading only, what was taken on until then is written; one that
/// comes later leaves out the files not yet begun.
class OutputWriter : public OutputList {
public:
  struct Libraries {
    CPDFTextDumpInit& text;
    CSplitPdfInit& split;
    CAppendPdfInit& append;
  };

  OutputWriter(const SplitSetup& setup, RunState& state, Libraries libraries, FolderLocks& locks,
               Operator& person, PageAccount& account);

  struct Source {
    QString path;
    int totalPages = 0;                   ///< that both libraries agree on
    std::function<bool()> isChanged = {}; ///< since it was opened
  };
  /// The source of the outputs that follow.
  void startSource(const Source& source);

  void output(const ReservedOutput& output) override;
  void replaced(const ReservedOutput& lost) override;
  void elsewhere(const ReservedOutput& output) override;
  void occupied(const ReservedOutput& output) override;
  void wereComplete() override;

  /// Writes what is held and waits until the fate of every output is known. To be called when the
  /// last one has come.
  void finish();

  /// Takes the files away again that were not there before, as far as they still are as they were
  /// written: their source turned out to be another one than was opened. After finish().
  void withdraw();

  /// A file as it was left, after finish().
  struct Written {
    struct Pages {
      int first;
      int last;
    };
    std::vector<Pages> pages;      ///< that it got of this source
    platform::FileStamp stamp;     ///< not known of one that an external command wrote and left
    platform::FileDigest identity; ///< only where mail is sent
    bool isNew = true;             ///< nothing was there before
  };
  /// By path.
  const QHash<QString, Written>& written() const { return m_written; }

  /// Files that were really written since startSource(), after finish(); one that was appended to
  /// counts once.
  int writtenFiles() const { return static_cast<int>(m_written.size()); }

  /// Outputs that failed, that a Stop left out, or of which a command left no sound file.
  QSet<QString> unmailablePaths() const;
  /// Whether the pages of this range from `firstPage` on are not in the file at `path` after all.
  bool isMissing(const QString& path, int firstPage) const;
  /// How many of those that RunState::outputCount counts came to nothing.
  int failedOutputs() const { return m_failedOutputs; }

private:
  using Ranges = std::vector<ReservedOutput>;

  bool isSourceChanged();
  void tellProgress(const ReservedOutput& output);
  bool takeFolderOf(const ReservedOutput& output);
  void runExternalCommand(const ReservedOutput& output);
  void settleCommand(const HandedFile& file, const QString& command,
                     const platform::ProgramEnd& end);
  bool isWhole(const ReservedOutput& output);
  QString placeProblem(const QString& path, bool& isNew);
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
  void wrote(const HandedFile& file, const platform::FileStamp& stamp,
             const platform::FileDigest& identity);
  void failed(const ReservedOutput& output, const QString& reason);

  const SplitSetup& m_setup;
  RunState& m_state;
  Libraries m_libraries;
  FolderLocks& m_locks;
  Operator& m_person;
  PageAccount& m_account;
  HandedOutputs m_handed;
  FileSystemRules m_rules = FileSystemRules::ofThisSystem();
  std::deque<Ranges> m_held;             ///< by output, as the outputs came first
  QHash<QString, std::size_t> m_heldFor; ///< places in m_held, by comparable path
  bool m_appendEndsRun = false;
  bool m_writesOnStop = false;
  bool m_isSourceChanged = false;
  Source m_source;
  QHash<QString, Written> m_written;
  QHash<QString, QSet<int>> m_unwritten; ///< first pages, by path
  QSet<QString> m_unmailable;            ///< paths whose ranges stay in the reports
  int m_failedOutputs = 0;
};

} // namespace folivex
