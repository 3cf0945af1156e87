#include "mail/EmailEntry.h"

namespace folivex {

namespace {

constexpr qsizetype maxPath = 255;
constexpr qsizetype maxBody = 4096;
constexpr qsizetype maxCopyAddress = 265;
constexpr qsizetype maxInvoiceNumber = 10;
constexpr qsizetype maxFlagText = 5;

/// Half a character at the end would not survive being written.
void cut(QString& text, qsizetype limit) {
  if (text.size() <= limit) {
    return;
  }
  const bool splitsPair = text[limit - 1].isHighSurrogate() && text[limit].isLowSurrogate();
  text.truncate(splitsPair ? limit - 1 : limit);
}

} // namespace

EmailEntry fitted(EmailEntry entry) {
  cut(entry.file, maxPath);
  cut(entry.address, maxPath);
  cut(entry.body, maxBody);
  cut(entry.cc, maxCopyAddress);
  cut(entry.invoiceNumberInSubject, maxInvoiceNumber);
  cut(entry.separateInvoices, maxFlagText);
  cut(entry.subject, maxPath);
  return entry;
}

} // namespace folivex
