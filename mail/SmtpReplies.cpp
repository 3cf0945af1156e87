#include "mail/SmtpReplies.h"

#include <algorithm>

namespace folivex {

namespace {

constexpr qsizetype codeLength = 3;
constexpr qsizetype longestText = 500;

} // namespace

void SmtpReplies::startKept(const SmtpOffers& offers) {
  *this = {};
  m_offers = offers;
}

void SmtpReplies::startNew(int goodAnswers) {
  *this = {};
  m_answersToOffers = goodAnswers;
}

bool SmtpReplies::onLine(QByteArrayView line) {
  const QByteArrayView digits = line.first(std::min(line.size(), codeLength));
  if (m_over || digits.size() < codeLength ||
      !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    return false;
  }
  const QByteArrayView text = line.sliced(std::min(line.size(), codeLength + 1)).trimmed();
  m_incoming.login = m_incoming.login || text.startsWith("AUTH ");
  m_incoming.utf8Addresses = m_incoming.utf8Addresses || text.startsWith("SMTPUTF8");
  if (line.size() > codeLength && line[codeLength] == '-') {
    return false;
  }
  m_lastText = text.first(std::min(text.size(), longestText)).toByteArray();
  onAnswer(digits.toInt());
  m_incoming = {};
  return true;
}

void SmtpReplies::onAnswer(int code) {
  m_lastCode = code;
  if (m_dataEnded && m_verdict == 0) {
    m_verdict = code;
  }
  // A refused EHLO is followed by HELO, so only good answers lead on.
  if (m_answersToOffers > 0 && code / 100 == 2 && --m_answersToOffers == 0) {
    m_offers = m_incoming;
  }
}

} // namespace folivex
