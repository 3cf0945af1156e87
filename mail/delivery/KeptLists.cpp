#include "mail/delivery/KeptLists.h"

#include "engine/base/Text.h"
#include "engine/setup/SplitSetup.h"
#include "platform/FileLocks.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace folivex {

namespace {

/// By KeptKind.
constexpr std::array kindNames = {QLatin1String("emails_sending"), QLatin1String("emails_not_sent"),
                                  QLatin1String("emails_may_have_arrived")};
constexpr QLatin1String listSuffix(".lst");
constexpr QLatin1String journalSuffix(".lst.sent");

/// The path with another kind in it.
QString ofKind(const QString& path, KeptKind from, KeptKind to) {
  const QString old = u'_' + keptListName(from) + u'_';
  QString other = path;
  return other.replace(other.lastIndexOf(old), old.size(), u'_' + keptListName(to) + u'_');
}

/// Of the source, no longer than leaves room for the rest of a list's name.
QString listTitle(const QString& source) {
  constexpr qsizetype mostBytes = 190;
  QString title = platform::fileTitle(platform::withoutTrailingBlanks(source));
  while (title.toUtf8().size() > mostBytes) {
    cutText(title, title.size() - 1);
  }
  return title;
}

bool isUnused(const QString& path) {
  return !QFileInfo::exists(path) && !QFileInfo::exists(SendJournal::pathBeside(path));
}

/// Where a lock does not bind other machines nobody can tell, and nothing is done twice.
bool mayBeInWork(const QString& list) {
  QFile file;
  platform::FileFailure failure;
  return !platform::hasDependableLocks(platform::folderOf(list)) ||
         (platform::openForReading(file, SendJournal::pathBeside(list),
                                   platform::FileAccess::Ordinary, failure) &&
          platform::lockFile(file, platform::LockUse::Alone) != platform::LockResult::Locked);
}

/// Takes the list and its journal away, unless somebody has just begun to send it.
void removeLeftover(const QString& list) {
  SendJournal journal;
  if (journal.open(list, {})) {
    QFile::remove(list);
    journal.remove();
  }
}

/// Half of a list, or one that a later one has taken the place of.
bool isLeftover(const FoundList& found) {
  return !QFileInfo::exists(found.path) ||
         (found.kind == KeptKind::Sending &&
          QFileInfo::exists(ofKind(found.path, KeptKind::Sending, KeptKind::NotSent)));
}

} // namespace

QString keptListName(KeptKind kind) {
  return kindNames[static_cast<std::size_t>(kind)];
}

QString unusedListPath(const SplitSetup& setup, const QString& source, const QString& kind) {
  const QString stem = platform::joinPath(
      outputFolderOf(setup, source),
      listTitle(source) + u'_' + kind + u'_' +
          QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd_HHmmss")));
  const bool isKept = kind == keptListName(KeptKind::Sending);
  const auto isFree = [isKept](const QString& path) {
    return isUnused(path) &&
           (!isKept || (isUnused(ofKind(path, KeptKind::Sending, KeptKind::NotSent)) &&
                        isUnused(ofKind(path, KeptKind::Sending, KeptKind::MayHaveArrived))));
  };
  QString path = stem + listSuffix;
  for (int number = 2; !isFree(path); ++number) {
    path = QStringLiteral("%1_%2").arg(stem).arg(number) + listSuffix;
  }
  return path;
}

std::vector<FoundList> listsLeftOf(const SplitSetup& setup, const QString& source) {
  const QString folder = outputFolderOf(setup, source);
  const QString title = listTitle(source);
  std::vector<FoundList> lists;
  QStringList names = platform::filesThatBeginWith({}, folder);
  names.removeIf([&](const QString& name) {
    return !name.startsWith(title + u'_') || !name.endsWith(journalSuffix);
  });
  names.sort();
  for (const QString& name : std::as_const(names)) {
    const auto kind = std::ranges::find_if(kindNames, [&](QLatin1String kindName) {
      return name.startsWith(title + u'_' + kindName + u'_');
    });
    if (kind == kindNames.end()) {
      continue;
    }
    FoundList found;
    found.kind = static_cast<KeptKind>(kind - kindNames.begin());
    found.path = platform::joinPath(folder, name.chopped(journalSuffix.size() - listSuffix.size()));
    const std::optional<JournalContent> content = SendJournal::read(found.path);
    found.isReadable = content.has_value();
    found.isInWork = found.isReadable && mayBeInWork(found.path);
    if (found.isReadable && !found.isInWork && isLeftover(found)) {
      removeLeftover(found.path);
      continue;
    }
    found.work = content ? content->work : MailWork();
    lists.push_back(std::move(found));
  }
  return lists;
}

/// Of two that come at the same moment the one with the smaller name goes on.
bool KeptLists::hasOther(const MailWork& work, const SplitSetup& setup, const QString& ownPath,
                         QString& problem) const {
  for (const FoundList& found : listsLeftOf(setup, work.source)) {
    const bool isOther = found.path != ownPath && journalOf(found.path) == nullptr;
    const bool comesFirst = ownPath.isEmpty() || found.path < ownPath;
    if (isOther && ownPath.isEmpty() && !found.isReadable && found.kind == KeptKind::Sending) {
      problem = QStringLiteral("%1 is another user's: it may hold the same e-mails. Remove it when "
                               "they are settled")
                    .arg(found.path);
      return true;
    }
    if (isOther && comesFirst && found.isInWork && found.work == work) {
      problem = QStringLiteral("another program may be mailing the outputs of this source just "
                               "now, by the list %1")
                    .arg(found.path);
      return true;
    }
  }
  return false;
}

SendJournal* KeptLists::keep(EmailEntries& entries, const SplitSetup& setup, const QString& source,
                             QString& problem, bool& isInWork) {
  const MailWork work = MailWork::of(setup, source);
  isInWork = hasOther(work, setup, {}, problem);
  if (isInWork) {
    return nullptr;
  }
  Kept kept{{}, std::make_unique<SendJournal>()};
  constexpr int namesToTry = 8; // others take names at the same moment
  bool isOpen = false;
  for (int i = 0; i < namesToTry && !isOpen; ++i) {
    kept.path = unusedListPath(setup, source, keptListName(KeptKind::Sending));
    isOpen = kept.journal->open(kept.path, work, SendJournal::Use::NewOnly);
  }
  if (!isOpen || !kept.journal->enter(entries)) {
    problem = kept.journal->problem();
    drop(kept);
    return nullptr;
  }
  EmailList list;
  list.setEntries(entries, {});
  const EmailListResult saved = writeEmailList(list, kept.path);
  if (!saved.ok) {
    problem = QStringLiteral("%1 (%2)").arg(saved.message, saved.note);
    drop(kept);
    return nullptr;
  }
  isInWork = hasOther(work, setup, kept.path, problem);
  if (isInWork) {
    drop(kept);
    return nullptr;
  }
  m_kept.push_back(std::move(kept));
  return m_kept.back().journal.get();
}

SendJournal* KeptLists::adopt(const QString& path, QString& problem) {
  auto journal = std::make_unique<SendJournal>();
  if (!journal->open(path, {})) {
    problem = journal->problem();
    return nullptr;
  }
  m_kept.push_back({path, std::move(journal)});
  return m_kept.back().journal.get();
}

SendJournal* KeptLists::journalOf(const QString& path) const {
  const auto found = std::ranges::find(m_kept, path, &Kept::path);
  return found == m_kept.end() ? nullptr : found->journal.get();
}

QString KeptLists::besideLast(KeptKind kind) const {
  return m_kept.empty() ? QString() : ofKind(m_kept.back().path, KeptKind::Sending, kind);
}

MailWork KeptLists::workOfLast() const {
  return m_kept.empty() ? MailWork() : m_kept.back().journal->work();
}

void KeptLists::keepOnlyWhatWentOut() {
  for (const Kept& kept : m_kept) {
    EmailList list;
    static_cast<void>(loadEmailList(list, kept.path));
    std::vector<std::size_t> gone;
    for (std::size_t row = 0; row < list.count(); ++row) {
      const EmailEntry& entry = list.rows()[row].entry;
      if (!entry.sentTo.isEmpty() || !entry.mayHaveReached.isEmpty()) {
        gone.push_back(row);
      }
    }
    list.reduceTo(gone);
    if (gone.empty() || !writeEmailList(list, kept.path).ok) {
      QFile::remove(kept.path);
    }
  }
}

void KeptLists::releaseLast() {
  if (!m_kept.empty()) {
    m_kept.pop_back();
  }
}

void KeptLists::dropLast() {
  if (!m_kept.empty()) {
    drop(m_kept.back());
    m_kept.pop_back();
  }
}

void KeptLists::dropAll() {
  while (!m_kept.empty()) {
    dropLast();
  }
}

/// The list first: a journal without one is no work. One that was never ours is left alone.
void KeptLists::drop(Kept& kept) {
  if (kept.journal->isOpen()) {
    QFile::remove(kept.path);
    kept.journal->remove();
  }
}

} // namespace folivex
