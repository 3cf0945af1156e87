// KeptLists: the lists of a run on the disk, so that the program's end is not theirs.
#pragma once

#include "mail/EmailListFile.h"

#include <QString>
#include <QStringList>

namespace folivex {

struct SplitSetup;

/// Where a list of the outputs of `source` is saved: in their folder, "SOURCE_KIND_TIME.lst", TIME
/// like "20240131_235959". A name that nothing has yet: a list that exists is never replaced.
QString unusedListPath(const SplitSetup& setup, const QString& source, const QString& kind);

/// Whether `path` is named like a list of KeptLists: its program died while it was sent.
bool isListOfBrokenRun(const QString& path);

/// Lists that are in no file while they are sent. Each lies as "SOURCE_emails_sending_TIME.lst"
/// beside the outputs until it is dropped. A program that dies leaves it there, whole: loaded as
/// any other list, the log tells which of its mails went out.
class KeptLists {
public:
  /// Empty, or why the list could not be saved. Sending may go on without.
  QString keep(const EmailList& list, const SplitSetup& setup, const QString& source);
  /// What keep() saved last has nothing in it any more that is still to be sent.
  void dropLast();
  /// Somebody has been told what became of all of them, or it is saved elsewhere.
  void dropAll();

private:
  QStringList m_paths;
};

} // namespace folivex
