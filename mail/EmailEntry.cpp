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

QString subjectOf(const EmailEntry& entry, const QString& settingsSubject) {
  const QString subject = entry.subject.isEmpty() ? settingsSubject : entry.subject;
  return entry.invoiceNumberInSubject.isEmpty() || subject.isEmpty()
             ? subject + entry.invoiceNumberInSubject
             : subject + u' ' + entry.invoiceNumberInSubject;
}

QString doubtAbout(const EmailEntry& entry) {
  return entry.isUnchecked ? QStringLiteral("nothing tells whether the file is the one that was "
                                            "written")
         : entry.addressesDiffer ? QStringLiteral("the file holds pages with different addresses")
         : entry.holdsEarlierPages
             ? QStringLiteral("the file holds pages of earlier runs, which may be somebody else's")
             : QString();
}

} // namespace folivex
