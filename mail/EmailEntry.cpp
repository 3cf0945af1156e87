#include "mail/EmailEntry.h"

namespace folivex {

namespace {

constexpr qsizetype maxText = 255;
constexpr qsizetype maxBody = 4096;
constexpr qsizetype maxCopyAddress = 265;
constexpr qsizetype maxInvoiceNumber = 10;
constexpr qsizetype maxFlagText = 5;

} // namespace

void cutText(QString& text, qsizetype limit) {
  if (text.size() <= limit) {
    return;
  }
  const bool splitsPair =
      limit > 0 && text[limit - 1].isHighSurrogate() && text[limit].isLowSurrogate();
  text.truncate(splitsPair ? limit - 1 : limit);
}

EmailEntry fitted(EmailEntry entry) {
  cutText(entry.address, maxText);
  cutText(entry.body, maxBody);
  cutText(entry.cc, maxCopyAddress);
  cutText(entry.invoiceNumberInSubject, maxInvoiceNumber);
  cutText(entry.separateInvoices, maxFlagText);
  cutText(entry.subject, maxText);
  return entry;
}

} // namespace folivex
