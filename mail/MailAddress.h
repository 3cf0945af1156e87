// MailAddress: what counts as an e-mail address, and taking addresses out of text.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace folivex {

/// Most characters (bytes of UTF-8) of an address, and of the part before its "@".
inline constexpr qsizetype maxAddressLength = 254;
inline constexpr qsizetype maxLocalPartLength = 64;

/// What the part behind the "@" may be.
enum class MailDomain {
  Public, ///< at least two labels, the last one no number: what stands on a page
  AnyHost ///< one label ("localhost") or "[192.0.2.1]" too: what a person typed
};

/// Empty when `address` is one address and nothing else, else why it is none, in words that go
/// behind the address ("has no \"@\""). Accepted are RFC 5321 addresses, with a quoted local part
/// too, and letters beyond ASCII on both sides (RFC 6531); the domain is checked in its ASCII form.
/// A control character, a blank outside quotes, or "<" and ">" never pass, so what passes cannot
/// add a line to a mail's head or a command to the talk with a server.
QString addressProblem(QStringView address, MailDomain domain = MailDomain::AnyHost);

inline bool isMailAddress(QStringView address, MailDomain domain = MailDomain::AnyHost) {
  return addressProblem(address, domain).isEmpty();
}

/// One address and where it stands in the text that it was found in.
struct PlacedAddress {
  QString address;
  qsizetype start = 0;
  qsizetype end = 0; ///< behind its last character
};

/// Every address in one word of a page, in order: "mailto:", brackets, quotes and trailing
/// punctuation are left behind, several ones between ";" and "," come apart. Only addresses that
/// pass addressProblem() with MailDomain::Public. The time grows with the length of the word.
std::vector<PlacedAddress> addressesIn(QStringView word);

/// The address in a form that two spellings of one mailbox share: the domain in lower case. The
/// part before the "@" is the mailbox's own business and stays.
QString comparableAddress(const QString& address);

/// The address as it goes to a mail server: its domain in ASCII (RFC 5891). Empty when there is no
/// such form.
QString addressForServer(const QString& address);

} // namespace folivex
