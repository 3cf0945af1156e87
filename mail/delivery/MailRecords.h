// MailRecords: what became of mails, told to a program.
#pragma once

#include "mail/EmailList.h"
#include "mail/EmailSendRun.h"

#include <QJsonObject>

namespace folivex {

class Operator;

/// One record of type "mail" for each row of a list that was worked through.
void recordMails(const EmailList& list, const SendSummary& summary, Operator& person);

/// Of type "mailList": the list was saved there for somebody to send.
QJsonObject mailListRecord(const EmailList& list, const QString& path);

/// How many mails of a source came to what, and the list with what is left, which may be empty.
QJsonObject mailsRecord(const SendSummary& summary, const QString& savedList);

} // namespace folivex
