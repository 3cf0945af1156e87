// KeptLists: the lists of a run on the disk, so that the program's end is not theirs.
#pragma once

#include "mail/EmailListFile.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace folivex {

struct SplitSetup;

/// Where a list of the outputs of `source` is saved: in their folder, "SOURCE_KIND_TIME.lst", TIME
/// like "20240131_235959". A name that nothing has yet: a list that exists is never replaced.
QString unusedListPath(const SplitSetup& setup, const QString& source, const QString& kind);

/// Lists that a piece of work leaves while, and until, its mails have gone out.
enum class KeptKind {
  Sending, ///< "emails_sending": they are going out, or the program died while they were
  NotSent, ///< "emails_not_sent": what could not be sent
  MayHaveArrived
};

QString keptListName(KeptKind kind);

/// A list of KeptKind that lies beside the outputs.
struct FoundList {
  QString path;
  KeptKind kind = KeptKind::Sending;
  bool isInWork = false;   ///< another process, or this one, sends it just now; or none can tell
  bool isReadable = false; ///< else it is another user's
  MailWork work;
};
/// Those of `source`, by name. What a crash left half made or half removed goes.
std::vector<FoundList> listsLeftOf(const SplitSetup& setup, const QString& source);

/// Each list lies as "SOURCE_emails_sending_TIME.lst" beside the outputs, its journal beside it and
/// locked, until it is dropped. A program that dies leaves both: the same command then goes on with
/// them.
class KeptLists {
public:
  /// Saves the entries, which their journal then knows. Null, and the problem, when that cannot be
  /// done, or when another process sends mails of the same work (then isInWork is set, too).
  SendJournal* keep(EmailEntries& entries, const SplitSetup& setup, const QString& source,
                    QString& problem, bool& isInWork);
  /// Takes a list that an earlier process left.
  SendJournal* adopt(const QString& path, QString& problem);
  SendJournal* journalOf(const QString& path) const;

  /// Of the list kept last, of another kind; empty when none is kept.
  QString besideLast(KeptKind kind) const;
  MailWork workOfLast() const;
  /// Another list takes over all that is still to be sent.
  void keepOnlyWhatWentOut();
  /// Leaves the one kept last where it is, for others to take.
  void releaseLast();
  /// Nothing of it is needed any more.
  void dropLast();
  void dropAll();

private:
  struct Kept {
    QString path;
    std::unique_ptr<SendJournal> journal;
  };
  bool hasOther(const MailWork& work, const SplitSetup& setup, const QString& ownPath,
                QString& problem) const;
  static void drop(Kept& kept);

  std::vector<Kept> m_kept;
};

} // namespace folivex
