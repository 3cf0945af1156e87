// Where every page of a source went, in one line.
#include "engine/output/PageAccount.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <functional>

using namespace folivex;

TEST(PageAccount, EveryPageIsToldOnce) {
  struct Row {
    const char* fault;
    int pages;
    std::function<void(PageAccount&)> arrange;
    const char* summary;
  };
  const Row rows[] = {
      {"page that is in one file counted as failed in another", 4,
       [](PageAccount& a) {
         a.written(1, 3);
         a.failed(2, 4);
         a.replaced(1, 4);
         a.stopped(1, 4);
       },
       "4 page(s): 3 in 1 file(s), 1 FAILED (4)."},
      {"each fate told", 4,
       [](PageAccount& a) {
         a.replaced(1, 1);
         a.failed(2, 2);
         a.stopped(3, 3);
       },
       "4 page(s): 0 in 1 file(s), 1 in no range (4), 1 only in files that a later one of the same "
       "name replaced (1), 1 not written, since the run was stopped (3), 1 FAILED (2)."},
      {"file that gave way to a later one after it was written", 3,
       [](PageAccount& a) {
         a.written(1, 2);
         a.written(2, 3);
         a.overwritten(1, 2);
       },
       "3 page(s): 2 in 1 file(s), 1 only in files that a later one of the same name replaced "
       "(1)."},
      {"pages that the source does not have", 2,
       [](PageAccount& a) {
         a.written(-2'000'000'000, 1);
         a.failed(2, 2'000'000'000);
         a.written(2, 1);
       },
       "2 page(s): 1 in 1 file(s), 1 FAILED (2)."},
      {"page count that a file only claims", -7, [](PageAccount& a) { a.written(1, 1); },
       "0 page(s): 0 in 1 file(s)."},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    PageAccount account;
    account.start(row.pages);
    row.arrange(account);
    EXPECT_EQ(account.summary(1), QString::fromLatin1(row.summary));
  }
}
