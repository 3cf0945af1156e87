#include "mail/SmtpReplies.h"

namespace folivex {

namespace {

constexpr qsizetype codeLength = 3;
constexpr qsizetype longestText = 500;

/// Code of a line, 0 when it is none.
int codeOf(QByteArrayView line) {
  int code = 0;
  for (qsizetype i = 0; i < codeLength; ++i) {
    if (i >= line.size() || line[i] < '0' || line[i] > '9') {
      return 0;
    }
    code = code * 10 + (line[i] - '0');
  }
  return code;
}

} // namespace

void SmtpReplies::startKept(const SmtpOffers& offers) {
  *this = {};
  m_offers = offers;
  m_stage = Stage::Known;
}

void SmtpReplies::startNew(Upgrade upgrade) {
  *this = {};
  m_upgrade = upgrade;
}

void SmtpReplies::onLine(QByteArrayView line) {
  const int code = codeOf(line);
  if (code == 0 || m_over) {
    return;
  }
  const QByteArrayView text = line.sliced(qMin(line.size(), codeLength + 1)).trimmed();
  m_incoming.login = m_incoming.login || text.startsWith("AUTH ");
  m_incoming.startTls = m_incoming.startTls || text.startsWith("STARTTLS");
  m_incoming.utf8Addresses = m_incoming.utf8Addresses || text.startsWith("SMTPUTF8");
  const bool last = line.size() <= codeLength || line[codeLength] != '-';
  if (last) {
    m_lastText = text.first(qMin(text.size(), longestText)).toByteArray();
    onAnswer(code);
    m_incoming = {};
  }
}

void SmtpReplies::onAnswer(int code) {
  m_lastCode = code;
  if (m_dataEnded && m_verdict == 0) {
    m_verdict = code;
  }
  // A refused EHLO is followed by HELO, so only good answers lead on.
  if (code / 100 != 2) {
    return;
  }
  switch (m_stage) {
  case Stage::Banner:
    m_stage = Stage::Hello;
    break;
  case Stage::Hello:
    m_stage = m_upgrade == Upgrade::StartTls ? Stage::Upgrade : Stage::Known;
    m_offers = m_incoming;
    break;
  case Stage::Upgrade:
    m_stage = Stage::HelloAgain;
    break;
  case Stage::HelloAgain:
    m_stage = Stage::Known;
    m_offers = m_incoming;
    break;
  case Stage::Known:
    break;
  }
}

} // namespace folivex
