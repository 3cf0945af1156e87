// SmtpReplies: what the answers of a mail server say about the talk and the mail.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace folivex {

/// What a server offers after its greeting.
struct SmtpOffers {
  bool login = false;
  bool utf8Addresses = false;
};

/// Follows the answers line by line. Only what the order of answers tells is used, never their
/// words.
class SmtpReplies {
public:
  /// A mail on a connection that was kept: what it offers is known already.
  void startKept(const SmtpOffers& offers);
  /// A new connection, whose server has told its offers with its `goodAnswers`th good answer.
  void startNew(int goodAnswers);

  /// One line as it came, its line end included. True when it ends an answer.
  bool onLine(QByteArrayView line);
  /// The whole mail went out: the next answer is about it.
  void onDataEnd() { m_dataEnded = true; }
  /// What comes now answers a good-bye and says nothing about the mail.
  void onGoodbye() { m_over = true; }

  /// Once the server has told what it offers on the connection as it is now.
  bool offersKnown() const { return m_answersToOffers == 0; }
  const SmtpOffers& offers() const { return m_offers; }

  bool dataEnded() const { return m_dataEnded; }
  /// Code of the answer to the whole mail, 0 while there is none.
  int verdict() const { return m_verdict; }
  /// The last whole answer: its code (0 without one) and the text of its last line, at most 500
  /// bytes.
  int lastCode() const { return m_lastCode; }
  QByteArray lastText() const { return m_lastText; }

private:
  void onAnswer(int code);

  SmtpOffers m_offers;
  SmtpOffers m_incoming; ///< of the answer whose lines are coming in
  int m_answersToOffers = 0;
  bool m_dataEnded = false;
  bool m_over = false;
  int m_verdict = 0;
  int m_lastCode = 0;
  QByteArray m_lastText;
};

} // namespace folivex
