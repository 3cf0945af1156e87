#include "mail/AddressSearch.h"
#include "engine/setup/SplitSetup.h"
#include "mail/MailAddress.h"
#include "tests/support/Programs.h"

namespace folivex::test {
namespace {

/// A line of words, each where a text of 10 points puts it; "^" in front moves a word to the next
/// column, far away.
AddressReader::Found searched(const QString& line, AddressRules rules = {}) {
  AddressSearch search(std::move(rules));
  int h = 50;
  int v = 100;
  for (QString word : line.split(u' ', Qt::SkipEmptyParts)) {
    if (word == u"/") {
      v += 14;
      h = 50;
      continue;
    }
    if (word.startsWith(u'^')) {
      word.remove(0, 1);
      h += 300;
    }
    search.add({word, h, v});
    h += static_cast<int>(word.size() + 1) * 6;
  }
  return search.find();
}

QString joined(const AddressReader::Found& found) {
  return (QStringList(found.address) + found.further).join(u' ');
}

TEST(AddressSearch, FindsAddressesOnRealisticLines) {
  struct Row {
    const char* line;
    const char* found;
  };
  const Row rows[] = {
      {"E-mail: anna.meyer@example.org", "anna.meyer@example.org"},
      {"Email:anna@example.org", "anna@example.org"},
      {"mailto:anna@example.org?subject=Hi", "anna@example.org"},
      {"\"Anna Meyer\" <anna@example.org>,", "anna@example.org"},
      {"Questions? anna@example.org! Thanks", "anna@example.org"},
      {"a@example.org;b@example.org,c@example.org", "a@example.org b@example.org c@example.org"},
      {"info@a.example/sales@b.example", "info@a.example sales@b.example"},
      {"anna@example.org|bert@example.org", "anna@example.org bert@example.org"},
      {"anna@example.org anna@EXAMPLE.org ANNA@example.org", "anna@example.org ANNA@example.org"},
      {"anna @ example.org", "anna@example.org"},
      {"anna.meyer @example.org today", "anna.meyer@example.org"},
      {"anna@example. org now", "anna@example.org"},
      {"Mail anna@example.com. info follows", "anna@example.com"},
      {"anna@exam ple.org", "anna@example.org"},
      {"anna@example .co .uk", "anna@example.co.uk"},
      {"Email:____ anna@example.org", "anna@example.org"},
      {"E-mail_ anna@example.org", "anna@example.org"},
      {"o'neil+bills@mail-2.example.travel", "o'neil+bills@mail-2.example.travel"},
      {"\"anna.meyer\"@example.org", "\"anna.meyer\"@example.org"},
      {"Courriel:rené@société.example", "rené@société.example"},
      {"邮箱anna@example.org请回复", "anna@example.org"},
      {"用户@例子.公司", "用户@例子.公司"},
      {"E-mail=anna@example.org Fax/E-Mail/bert@example.org", "anna@example.org bert@example.org"},
      {"Rating: A+ info@acme.example", "info@acme.example"},
      {"Anna_ <anna@example.org>", "anna@example.org"},
      {"Anna_ ^anna@example.org", "anna@example.org"},
      {"anna@my- company.org", "anna@my-company.org"},
      {"anna@example.org---", "anna@example.org"},
      {"anna@example.org .net users", "anna@example.org"},
      {"anna@example.de. info follows", "anna@example.de"},
      {"anna@firma. de, or", "anna@firma.de"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(joined(searched(row.line)), row.found) << row.line;
  }
  // What stands beside an address is no part of it, and half an address is none: a mail must not
  // reach a stranger.
  for (const char* line :
       {"anna_ meyer@example.org", "anna ^@example.org", "anna @ / example.org",
        "Follow us @folivex on", "2 pens @ 3.50 each", "ftp://user:pw@example.org/in",
        "a@b@example.org", "anna..meyer@example.org", "anna@-example.org anna@example.1",
        "Anna_ anna@example.org", "anna@intranet www.example.org", "anna@mail.my- company.org",
        "anna@mail.my-", "anna@my- www.example.org", "anna@example.co .uk", "me@work. thanks"}) {
    EXPECT_EQ(joined(searched(line)), "") << line;
  }
}

TEST(AddressSearch, HeedsWindowsAndTheTextsAround) {
  struct Row {
    const char* fault;
    AddressRules rules;
    const char* line;
    const char* found;
  };
  const Row rows[] = {
      {"above", {.verticalFrom = 110}, "a@x.example / b@x.example", "b@x.example"},
      {"below", {.verticalTo = 110}, "none / b@x.example", ""},
      {"left", {.horizontalFrom = 100}, "a@x.example ^b@x.example", "b@x.example"},
      {"right", {.horizontalTo = 100}, "pay ^a@x.example", ""},
      {"a piece left of the window is taken", {.horizontalFrom = 60}, "anna @example.org", ""},
      {"bound", {.horizontalFrom = 50, .horizontalTo = 50}, "a@x.example", "a@x.example"},
      {"words", {.afterText = "Send  bill: "}, "a@b.de Send bill: b@b.de c@b.de", "b@b.de c@b.de"},
      {"same word", {.afterText = "Mail:"}, "a@x.example Mail:b@x.example", "b@x.example"},
      {"another line's text", {.afterText = "Mail:"}, "Mail: / b@x.example", ""},
      {"before", {.beforeText = "Phone"}, "a@x.example Phone 12 b@x.example", "a@x.example"},
      {"between", {.afterText = "E:", .beforeText = "T:"}, "a@b.de E: b@b.de T: c@b.de", "b@b.de"},
      {"text on the left", {.horizontalFrom = 100, .afterText = "M:"}, "M: to ^a@b.de", "a@b.de"},
      {"text on the right", {.horizontalTo = 60, .beforeText = "F"}, "a@b.de ^or F", "a@b.de"},
      {"case", {.afterText = "mail:"}, "MAIL: a@x.example", ""},
      {"no case", {.afterText = "mail:", .ignoreCase = true}, "MAIL: a@b.de", "a@b.de"},
      {"joined", {.afterText = "To:", .beforeText = "Fax"}, "To: a @ b.de Fax", "a@b.de"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(joined(searched(row.line, row.rules)), row.found) << row.fault;
  }
  const AddressRules after{.afterText = "Mail:"};
  const auto behind = [](int words) { return "Mail: " + QString("x ").repeated(words) + "a@b.de"; };
  EXPECT_EQ(joined(searched(behind(254), after)), "a@b.de");
  EXPECT_EQ(joined(searched(behind(255), after)), "") << "the words around end after 255";
}

/// A page that would take hours if any step looked at all of it again.
TEST(AddressSearch, HostilePagesEnd) {
  AddressRules rules;
  rules.afterText = QStringLiteral("@@");
  rules.beforeText = QStringLiteral("@");
  const QString atSigns(300, u'@');
  const QString quotes = QStringLiteral("\"@").repeated(150);
  AddressSearch search(rules);
  int events = 0;
  search.handlePendingEvents = [&events] { ++events; };
  for (int i = 0; i < 20'000; ++i) {
    search.add({i % 3 == 0 ? atSigns : i % 3 == 1 ? quotes : QStringView(u"a@b-"), i, 100});
  }
  EXPECT_EQ(joined(search.find()), "");
  EXPECT_EQ(events, 20'000);
}

TEST(MailAddress, ChecksWhatATypedAddressMayBe) {
  const QString local(64, u'a');
  const QString label(63, u'b');
  for (const QString& good :
       {QString("anna@example.org"), QString("root@localhost"), QString("anna@[192.0.2.1]"),
        QString("anna@[IPv6:2001:db8::1]"), QString("\"anna meyer\"@example.org"),
        QString("\"a\\\"b@c\"@example.org"), QString("anna@bücher.example"),
        local + "@x.example"}) {
    EXPECT_TRUE(isMailAddress(good)) << good.toStdString();
  }
  const QStringList bad = {"",
                           "anna@",
                           "@example.org",
                           ".anna@example.org",
                           "anna.@example.org",
                           "anna @example.org",
                           "anna@[300.1.1.1]",
                           "anna@exa mple.org",
                           "anna@exam_ple.org",
                           "anna@example.org\n",
                           "\"open@example.org",
                           "\"a>\"@example.org",
                           "Anna <anna@example.org>",
                           "anna@example.org, bert@example.org",
                           "anna@example.org\r\nBcc: all@example.org",
                           "\"anna\r\nRCPT TO:<x@y.example>\"@example.org",
                           "anna@example.org\xE2\x80\xAE", // NOLINT(misc-misleading-bidirectional)
                           QString::fromUtf8("anna@example.org\0", 17),
                           local + "a@example.org",
                           QStringList({local + "@" + label, label, label, "example"}).join('.')};
  for (const QString& address : bad) {
    EXPECT_FALSE(isMailAddress(address)) << address.toStdString();
  }
  EXPECT_EQ(addressForServer("Anna@bücher.example"), "Anna@xn--bcher-kva.example");
}

} // namespace
} // namespace folivex::test
