#include "mail/EmailEntry.h"

#include "engine/base/Text.h"

namespace folivex {

namespace {

constexpr qsizetype maxText = 255;
constexpr qsizetype maxBody = 4096;
constexpr qsizetype maxCopyAddress = 265;
constexpr qsizetype maxInvoiceNumber = 10;
constexpr qsizetype maxFlagText = 5;

} // namespace

EmailEntry fitted(EmailEntry entry) {
  entry.address = entry.address.trimmed();
  entry.cc = entry.cc.trimmed();
  cutText(entry.address, maxText);
  cutText(entry.body, maxBody);
  cutText(entry.cc, maxCopyAddress);
  cutText(entry.invoiceNumberInSubject, maxInvoiceNumber);
  cutText(entry.separateInvoices, maxFlagText);
  cutText(entry.subject, maxText);
  return entry;
}

} // namespace folivex
