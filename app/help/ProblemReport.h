// ProblemReport: what someone who looks for a fault needs to know, and nothing that is nobody's
// business.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace folivex {

struct LibraryVersion {
  QString name;
  QString version;
};

/// The computer and the program as they are just now.
struct SystemFacts {
  QString programVersion;
  std::vector<LibraryVersion> libraries;
  QString system;
  int processors = 0;
  qint64 memoryBytes = 0; ///< 0: not known
  double screenScale = 1;
};

/// `libraries` are those that the caller knows beside Qt.
SystemFacts systemFacts(const QString& programVersion, std::vector<LibraryVersion> libraries = {});

/// File names and words of the setup: what a person may want to tell, and may not.
enum class PrivateNames { LeftOut, Included };

/// Builds the text of a report. Passwords, the login, the mail server, e-mail addresses, subject
/// and text of mails and the parameters of the split command are never in it, wherever they came
/// from: a message that quotes them is told without them. A text setting that this class does not
/// know counts as one of these.
class ProblemReport {
public:
  /// `messages` are the last ones told, the newest at the end.
  ProblemReport(SystemFacts facts, SplitSetup setup, QStringList messages);

  QString subject() const;
  QString text(PrivateNames names) const;

private:
  QString systemText() const;
  QString setupText(PrivateNames names) const;
  QString messagesText(PrivateNames names) const;

  SystemFacts m_facts;
  SplitSetup m_setup;
  QStringList m_messages;
};

/// "mailto:" with everything that has a meaning in an address encoded.
QString mailAddress(const QString& to, const QString& subject, const QString& body);

/// Longest address that every desktop hands on whole.
inline constexpr qsizetype longestMailAddress = 1900;

} // namespace folivex
