// LivePlan: the plan of a split, made beside the window's thread while the split is being set.
#pragma once

#include "engine/job/SetupProposals.h"
#include "engine/job/SplitPlan.h"
#include "engine/output/PageAddresses.h"
#include "engine/setup/SplitSetup.h"
#include "engine/words/WordTable.h"
#include "platform/FileStamp.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace folivex {

class CPDFTextDumpInit;
class SourceTable;

/// Why a file does not open, and what to do about it, to be told behind the file's name. `result`
/// is what the text library gave.
QString openingProblem(int result, bool hasPassword);

/// A text of the pages that nearly is the one that was looked for.
struct NearWord {
  QString text;  ///< as it stands on the pages
  int pages = 0; ///< on how many of them
  int page = 0;  ///< the first of them, from 1
  int h = 0;     ///< its place there, as it would be typed to match it
  int v = 0;
  bool elsewhere = false; ///< does not stand at the position that the setup asks for
};

/// What is known of a plan at a moment. Handed out complete; never changed afterwards.
struct LivePlanState {
  enum class Stage {
    Opening,       ///< the file is being opened
    Reading,       ///< pages come in; `plan` is that of the first `pagesRead` of them
    Done,          ///< `plan` is what a run would do, unless `problem` tells why there is none
    NeedsPassword, ///< none was given, or a wrong one
    Unreadable,
    WaitsForOcr, ///< the words come from a copy that has to be made first: JobDriver::Recognise()
    TooLarge     ///< for words that are kept; JobDriver::Plan() reads them page by page
  };

  quint64 number = 0; ///< that plan() gave for these settings
  Stage stage = Stage::Opening;
  int pagesRead = 0;                      ///< that the plan knows, from the first page on
  int pageCount = 0;                      ///< 0 as long as the file is not open
  std::shared_ptr<const SplitPlan> plan;  ///< of the pages read so far; null before the first
  std::shared_ptr<const WordTable> words; ///< of the file, as far as they are read; may be null
  QString problem;                        ///< plain words, with the next step
  QStringList nearest;             ///< no match: sentences as JobDriver::explainNoMatch() tells
  std::vector<NearWord> nearWords; ///< the same as words, for buttons
  /// Of the whole file, told last, when they were asked for; none when nothing was found.
  std::optional<std::vector<SetupProposal>> proposals;
};

/// Keeps the words of one file, read once, and plans with the very stages of a run whenever it is
/// given settings. Nothing is written. The functions are called by any one thread, and none of them
/// waits; what is found comes through one function, called on a thread of this object's own.
class LivePlan {
public:
  using OnState = std::function<void(LivePlanState state)>;

  /// `library` must outlive this. `onState` must not call this object. The reader that
  /// `addressReader` makes is used on the thread of this object. `most`: bytes of memory for the
  /// words of a file.
  LivePlan(CPDFTextDumpInit& library, AddressReaderMaker addressReader, OnState onState,
           std::size_t most = WordTable::usualMost);
  LivePlan(const LivePlan&) = delete;
  LivePlan& operator=(const LivePlan&) = delete;
  /// After it nothing is told any more. Waits as long as a file takes to open at most.
  ~LivePlan();

  /// Plans with these settings, as SetupStore::working() holds them; gives up the plan before.
  /// Returns its number, which grows; states of older plans may still be on their way. The file is
  /// read again only when it, or what its words depend on, is another: given once more, the same
  /// settings ask whether anything has changed.
  /// Setups are proposed when the plan is there, if that is wanted.
  enum class Propose { No, IfNothingIsFound, Yes };
  quint64 plan(const SplitSetup& setup, Propose propose = Propose::No);
  /// No file: gives up everything, and tells nothing.
  void clear();

  /// Reading stands still, so that a run has the machine to itself. What is read stays planned
  /// with.
  void setPaused(bool on);

private:
  struct Request {
    quint64 number = 0;
    std::optional<SplitSetup> setup; ///< none: no file
    Propose propose = Propose::No;
  };
  class Planning;
  /// A plan, and what it was made of. As long as that has not changed it is the plan.
  struct Kept {
    SplitSetup setup;
    QString folder; ///< of all its outputs
    std::optional<platform::FileStamp> folderStamp;
    LivePlanState state;
  };

  quint64 ask(Request request);
  void work();
  std::optional<Request> nextRequest();
  void make(const Request& request);
  bool isKept(const Request& request, const WordTable& table) const;
  void keep(const SplitSetup& setup, const LivePlanState& state,
            std::chrono::system_clock::time_point begin);
  bool isWanted(quint64 number) const { return m_latest == number && !m_isEnding; }

  AddressReaderMaker m_addressReader;
  OnState m_onState;
  std::atomic<quint64> m_latest = 0;
  std::atomic<bool> m_isEnding = false;

  mutable std::mutex m_mutex; ///< guards what follows
  std::condition_variable m_asked;
  std::optional<Request> m_request;

  std::unique_ptr<SourceTable> m_source;
  std::optional<Kept> m_kept; ///< for the thread alone
  std::thread m_thread;
};

} // namespace folivex
