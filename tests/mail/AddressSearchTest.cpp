#include "mail/AddressSearch.h"
#include "engine/setup/SplitSetup.h"
#include "mail/MailAddress.h"
#include "tests/support/Rows.h"

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

/// What stands beside an address is no part of it, and half an address is none: a mail must not
/// reach a stranger.
TEST(AddressSearch, FindsWhatStandsOnALine) {
  forEachRow("mail/addresses.json", [](const SplitSetup& setup, const QStringList& row) {
    EXPECT_EQ(joined(searched(row[0], AddressRules::of(setup))), row[1]) << row[0].toStdString();
  });
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
  forEachRow("mail/typed-addresses.json", [](const SplitSetup&, const QStringList& row) {
    EXPECT_EQ(isMailAddress(row[0]), row[1] == "1") << row[0].toStdString();
  });
  EXPECT_EQ(addressForServer("Anna@bücher.example"), "Anna@xn--bcher-kva.example");
}

} // namespace
} // namespace folivex::test
