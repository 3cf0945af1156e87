// SendJournal: what became of the mails of a list, in a file beside it.
#pragma once

#include "mail/EmailEntry.h"

#include <QFile>

#include <optional>
#include <vector>

namespace folivex {

struct SplitSetup;

/// Which piece of work mails belong to: the same command on the same bytes does it again.
struct MailWork {
  QString source;             ///< absolute path of the PDF that was split; empty: not known
  platform::FileDigest bytes; ///< of that PDF
  QString settings;           ///< digest of those that decide about outputs and who gets them

  /// Reads the source.
  static MailWork of(const SplitSetup& setup, const QString& source);
  /// The same but for the bytes, which are not read.
  static MailWork withoutBytes(const SplitSetup& setup, const QString& source);

  bool operator==(const MailWork&) const = default;
};

/// What a journal holds: its rows, each with its file's identity and with those that it went out
/// to, or may have reached.
struct JournalContent {
  bool isOurs = false; ///< its first line is there
  MailWork work;
  EmailEntries rows; ///< as far as a journal keeps them; no texts
};

/// The companion "LIST.sent" of an e-mail list: UTF-8, a JSON object a line, only ever added to.
/// First the work, then a line for each row; while mails go out a line "begin" before the first
/// byte of each, which is on the disk by then, and a line "end" with what came of it. A mail that
/// begins and has no end may have arrived.
///
/// Who sends holds the file locked: a journal that nobody has locked, and that is not at its end,
/// was left by a program that died.
class SendJournal {
public:
  static QString pathBeside(const QString& list) { return list + QStringLiteral(".sent"); }

  /// Empty when there is none, or it cannot be read.
  static std::optional<JournalContent> read(const QString& list);
  /// Makes the one beside `list`, which has none or one that nobody has open. Nothing is written
  /// for rows of which nothing is known. Empty, or why it could not be written.
  static QString write(const QString& list, const MailWork& work, const EmailEntries& rows);

  /// Takes the journal beside `list`, which is made when there is none, for this process alone and
  /// until close(). False: see problem() and isInWork().
  enum class Use { Any, NewOnly };
  [[nodiscard]] bool open(const QString& list, const MailWork& work, Use use = Use::Any);
  /// Of the last open(): another process has it.
  bool isInWork() const { return m_isInWork; }
  bool isOpen() const { return m_file.isOpen(); }
  const MailWork& work() const { return m_content.work; }

  /// The mails to be sent, each with its identity. Those that the journal does not know become rows
  /// of it; the others learn from it what went out before.
  [[nodiscard]] bool enter(EmailEntries& entries);

  /// The entry's mail to `recipient` is about to go out; on the disk when true.
  [[nodiscard]] bool begin(std::size_t entry, const QString& recipient);
  /// What came of it.
  enum class Fate { Sent, NotSent, Unknown };
  [[nodiscard]] bool end(std::size_t entry, const QString& recipient, Fate fate);
  /// Sees to it that the last end() is on the disk, too.
  [[nodiscard]] bool sync();

  /// Why the last function failed, for a person.
  const QString& problem() const { return m_problem; }

  void close() { m_file.close(); }
  /// Removes the file.
  void remove();

private:
  bool lock();
  bool append(const QByteArray& lines);
  bool fail(const QString& reason);

  QString m_path;
  QFile m_file;
  JournalContent m_content;
  std::vector<std::size_t> m_rowOf; ///< by entry
  QString m_problem;
  bool m_isInWork = false;
  bool m_isBroken = false; ///< a line may be torn: nothing comes behind it
};

/// Gives the rows of a list that was read from a file what its journal knows of them. The rest are
/// unchecked.
void learnFrom(const std::optional<JournalContent>& journal, EmailEntries& rows);

} // namespace folivex
