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
      {"<anna@example.org>", "anna@example.org"},
      {"\"Anna Meyer\" <anna@example.org>,", "anna@example.org"},
      {"Questions? anna@example.org! Thanks", "anna@example.org"},
      {"a@example.org;b@example.org,c@example.org", "a@example.org b@example.org c@example.org"},
      {"info@a.example/sales@b.example", "info@a.example sales@b.example"},
      {"anna@example.org|bert@example.org", "anna@example.org bert@example.org"},
      {"anna@example.org anna@EXAMPLE.org ANNA@example.org", "anna@example.org ANNA@example.org"},
      {"anna @ example.org", "anna@example.org"},
      {"anna.meyer @example.org today", "anna.meyer@example.org"},
      {"anna@example. org now", "anna@example.org"},
      {"Mail anna@example.com. Thanks", "anna@example.com"},
      {"Mail anna@example.com. info follows", "anna@example.com"},
      {"anna@exam ple.org", "anna@example.org"},
      {"anna@example .co .uk", "anna@example.co.uk"},
      {"anna_ meyer@example.org", ""},
      {"Email:____ anna@example.org", "anna@example.org"},
      {"E-mail_ anna@example.org", "anna@example.org"},
      {"anna@example.org- call us", "anna@example.org"},
      {"anna ^@example.org", ""},
      {"anna @ / example.org", ""},
      {"Follow us @folivex on", ""},
      {"2 pens @ 3.50 each", ""},
      {"me@work tomorrow", ""},
      {"ftp://user:pw@example.org/in", ""},
      {"a@b@example.org", ""},
      {"anna..meyer@example.org", ""},
      {"anna@-example.org anna@example.1", ""},
      {"o'neil+bills@mail-2.example.travel", "o'neil+bills@mail-2.example.travel"},
      {"\"anna.meyer\"@example.org", "\"anna.meyer\"@example.org"},
      {"Courriel:rené@société.example", "rené@société.example"},
      {"邮箱anna@example.org请回复", "anna@example.org"},
      {"用户@例子.公司", "用户@例子.公司"},
      {"E-mail=anna@example.org Fax/E-Mail/bert@example.org", "anna@example.org bert@example.org"},
      // What stands beside an address is no part of it, and half an address is none: a mail must
      // not reach a stranger.
      {"Rating: A+ info@acme.example", "info@acme.example"},
      {"Anna_ anna@example.org", ""},
      {"Anna_ <anna@example.org>", "anna@example.org"},
      {"Anna_ ^anna@example.org", "anna@example.org"},
      {"anna@intranet www.example.org", ""},
      {"anna@ www.example.org", ""},
      {"anna@mail.my- company.org", ""},
      {"anna@mail.my-", ""},
      {"anna@my- company.org", "anna@my-company.org"},
      {"anna@my- www.example.org", ""},
      {"anna@example.org---", "anna@example.org"},
      {"anna@example.org .net users", "anna@example.org"},
      {"anna@mail.example .com", "anna@mail.example.com"},
      {"anna@example.co .uk", ""},
      {"anna@example.de. info follows", "anna@example.de"},
      {"me@work. thanks", ""},
      {"anna@firma. de, or", "anna@firma.de"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(joined(searched(QString::fromUtf8(row.line))), QString::fromUtf8(row.found))
        << row.line;
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
      {"above the window", {.verticalFrom = 110}, "a@x.example / b@x.example", "b@x.example"},
      {"below the window", {.verticalTo = 110}, "none / b@x.example", ""},
      {"left of the window", {.horizontalFrom = 100}, "a@x.example ^b@x.example", "b@x.example"},
      {"right of the window", {.horizontalTo = 100}, "pay ^a@x.example", ""},
      {"a piece left of the window is not taken", {.horizontalFrom = 60}, "anna @example.org", ""},
      {"the bound itself is inside",
       {.horizontalFrom = 50, .horizontalTo = 50},
       "a@x.example",
       "a@x.example"},
      {"after several words",
       {.afterText = "Send  bills to: "},
       "a@x.example Send bills to: b@x.example c@x.example",
       "b@x.example c@x.example"},
      {"after a text in the same word",
       {.afterText = "Mail:"},
       "a@x.example Mail:b@x.example",
       "b@x.example"},
      {"after a text on another line", {.afterText = "Mail:"}, "Mail: / b@x.example", ""},
      {"before", {.beforeText = "Phone"}, "a@x.example Phone 12 b@x.example", "a@x.example"},
      {"between",
       {.afterText = "E:", .beforeText = "T:"},
       "a@x.example E: b@x.example T: c@x.example",
       "b@x.example"},
      {"after a text left of the window",
       {.horizontalFrom = 100, .afterText = "Mail:"},
       "Mail: to ^a@x.example",
       "a@x.example"},
      {"before a text right of the window",
       {.horizontalTo = 60, .beforeText = "Fax"},
       "a@x.example ^or Fax",
       "a@x.example"},
      {"case matters", {.afterText = "mail:"}, "MAIL: a@x.example", ""},
      {"case set aside",
       {.afterText = "mail:", .ignoreCase = true},
       "MAIL: a@x.example",
       "a@x.example"},
      {"a text around a joined address",
       {.afterText = "To:", .beforeText = "Fax"},
       "To: anna @ example.org Fax",
       "anna@example.org"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(joined(searched(QString::fromUtf8(row.line), row.rules)),
              QString::fromUtf8(row.found))
        << row.fault;
  }
}

TEST(AddressSearch, NeighboursEndAfter255Words) {
  AddressRules rules;
  rules.afterText = QStringLiteral("Mail:");
  const auto found = [&](int between) {
    return searched(QStringLiteral("Mail: ") + QStringLiteral("x ").repeated(between) +
                        QStringLiteral("a@x.example"),
                    rules)
        .address;
  };
  EXPECT_EQ(found(254), QStringLiteral("a@x.example"));
  EXPECT_EQ(found(255), QString());
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
  struct Row {
    std::string address;
    bool good;
  };
  const std::string local64(64, 'a');
  const std::string local65(65, 'a');
  const std::string longDomain = local64 + "@" + std::string(63, 'b') + "." + std::string(63, 'c') +
                                 "." + std::string(63, 'd') + ".example";
  const Row rows[] = {
      {"anna@example.org", true},
      {"root@localhost", true},
      {"anna@[192.0.2.1]", true},
      {"anna@[IPv6:2001:db8::1]", true},
      {"anna@[300.1.1.1]", false},
      {"\"anna meyer\"@example.org", true},
      {"\"a\\\"b@c\"@example.org", true},
      {"\"open@example.org", false},
      {"\"a>\"@example.org", false},
      {"anna@bücher.example", true},
      {"anna@example.org, bert@example.org", false},
      {"Anna <anna@example.org>", false},
      {"anna@example.org\r\nBcc: all@example.org", false},
      {"anna@example.org\n", false},
      {"\"anna\r\nRCPT TO:<x@y.example>\"@example.org", false},
      {"anna@example.org\xE2\x80\xAE", false}, // NOLINT(misc-misleading-bidirectional)
      {"anna@exa mple.org", false},
      {"anna @example.org", false},
      {".anna@example.org", false},
      {"anna.@example.org", false},
      {"anna@", false},
      {"@example.org", false},
      {"anna@exam_ple.org", false},
      {"", false},
      {local64 + "@example.org", true},
      {local65 + "@example.org", false},
      {longDomain, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(isMailAddress(QString::fromStdString(row.address)), row.good) << row.address;
  }
  EXPECT_FALSE(isMailAddress(QString::fromUtf8("anna@example.org\0", 17)));
  EXPECT_EQ(addressForServer(QStringLiteral("Anna@bücher.example")),
            QStringLiteral("Anna@xn--bcher-kva.example"));
}

} // namespace
} // namespace folivex::test
