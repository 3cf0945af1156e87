// Where every page of a source went, in one line.
#include "engine/output/PageAccount.h"
#include "tests/support/Rows.h"

#include <map>

using namespace folivex;
using namespace folivex::test;

/// A row: pages of the source, what became of which of them, and the line.
TEST(PageAccount, EveryPageIsToldOnce) {
  const std::map<QString, void (PageAccount::*)(int, int)> fates = {
      {"written", &PageAccount::written},
      {"overwritten", &PageAccount::overwritten},
      {"replaced", &PageAccount::replaced},
      {"failed", &PageAccount::failed},
      {"stopped", &PageAccount::stopped}};
  forEachRow("output/page-accounts.json", [&](const SplitSetup&, const QStringList& row) {
    PageAccount account;
    account.start(row[0].toInt());
    for (const QString& entry : row[1].split(';')) {
      const QStringList words = entry.split(' ');
      (account.*fates.at(words[0]))(words[1].toInt(), words[2].toInt());
    }
    EXPECT_EQ(account.summary(1), row[2]);
  });
}
