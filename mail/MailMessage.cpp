#include "mail/MailMessage.h"

#include "mail/MailAddress.h"
#include "mail/MailHeader.h"

#include <QRegularExpression>

#include <utility>

namespace folivex {

QStringList copyAddresses(const QString& cc) {
  static const QRegularExpression outsideQuotes(QStringLiteral(R"((?:"[^"]*(?:"|$)|[^";,])+)"));
  QStringList addresses;
  for (const QRegularExpressionMatch& match : outsideQuotes.globalMatch(cc)) {
    addresses += match.captured().trimmed();
  }
  addresses.removeAll(QString());
  return addresses;
}

QString messageProblem(const MailMessage& message) {
  QList<std::pair<QString, QString>> addresses = {
      {QStringLiteral("the sender's"), message.sender},
      {QStringLiteral("the recipient's"), message.recipient}};
  for (const QString& copy : copyAddresses(message.cc)) {
    addresses.append({QStringLiteral("the copy"), copy});
  }
  for (const auto& [role, address] : addresses) {
    const QString problem = addressProblem(address);
    if (!problem.isEmpty()) {
      return QStringLiteral("%1 address \"%2\" %3")
          .arg(role, withoutControlCharacters(address).left(maxAddressLength), problem);
    }
  }
  return {};
}

} // namespace folivex
