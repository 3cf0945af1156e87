// EmailListFile: the e-mail list on disk.
#pragma once

#include "mail/EmailList.h"
#include "mail/SendJournal.h"

namespace folivex {

/// Where a list without a path is saved: in the current folder.
inline constexpr QLatin1String defaultEmailListPath("default.lst");

struct [[nodiscard]] EmailListResult {
  bool ok = false;
  QString message; ///< to show, whatever came of it; empty after a good load
  QString note; ///< what else the person should know: the reason, rows that the format cannot hold
};

/// Writes address, file and page range of every row. The old file stays whole until the new one is;
/// a new one is made with permissions 0600. An empty list writes nothing.
EmailListResult writeEmailList(const EmailList& list, const QString& path);

/// The same with the journal beside it, which keeps what the rows' files were and which mails went
/// out. A list that is being sent just now is not replaced.
EmailListResult saveEmailList(const EmailList& list, const QString& path,
                              const MailWork& work = {});

/// Replaces the rows of `list`, with what the journal beside the file knows of them; when the file
/// cannot be opened the list is left empty.
EmailListResult loadEmailList(EmailList& list, const QString& path);

} // namespace folivex
