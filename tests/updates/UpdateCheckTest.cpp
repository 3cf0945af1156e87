// What is made of a server's answer, and asking it off this thread.
#include "tests/support/Rows.h"
#include "tests/support/WindowBench.h"
#include "tests/updates/UpdateBench.h"
#include "updates/VersionNumber.h"

namespace folivex {

namespace {

TEST(VersionNumber, Order) {
  const QStringList ascending =
      QString("0.9 4.9.2 4.10.0-alpha 4.10.0-alpha.1 4.10.0-beta.2 4.10.0-beta.11 4.10.0-rc.1 "
              "4.10.0 4.10.0.1 v5")
          .split(' ');
  for (qsizetype i = 1; i < ascending.size(); i++) {
    EXPECT_TRUE(*VersionNumber::read(ascending[i - 1]) < *VersionNumber::read(ascending[i])) << i;
    EXPECT_FALSE(*VersionNumber::read(ascending[i]) < *VersionNumber::read(ascending[i - 1])) << i;
  }
  EXPECT_TRUE(*VersionNumber::read("4.1") == *VersionNumber::read("4.1.0+build.7"));
  for (const char* none :
       {"", "four", "4.", "4..1", "4.1-", "4.1 ", "1.2.3.4.5", "99999999999", "4.1\n", "-1"}) {
    EXPECT_FALSE(VersionNumber::read(none)) << none;
  }
}

TEST(UpdateOffer, TakesNothingHarmfulFromAServer) {
  test::forEachRow("updates/offers.json", [](const SplitSetup&, const QStringList& row) {
    UpdateOffer offer;
    EXPECT_EQ(readOffer(row[0].toUtf8(), offer).isEmpty(), !row[1].isEmpty());
    EXPECT_TRUE(offer == UpdateOffer({row[1], {}, row.value(2)}));
  });
}

class UpdateCheckRun : public test::UpdateBench {
protected:
  UpdateResult resultOf(UpdateCheck& check, const QString& address) const {
    std::optional<UpdateResult> told;
    check.start(address, [&told](const UpdateResult& result) { told = result; });
    EXPECT_TRUE(testing::waitUntil([&told] { return told.has_value(); }));
    EXPECT_FALSE(check.isRunning());
    return told.value_or(UpdateResult());
  }
};

TEST_F(UpdateCheckRun, IsDueWhenTheLastAnswerIsOldEnough) {
  UpdateCheck check(memory, surroundings());
  EXPECT_TRUE(check.settings() == UpdateSettings()) << "on by itself";
  UpdateSettings settings;
  settings.isOn = true;
  settings.address = secure("/same");
  check.keepSettings(settings);
  EXPECT_TRUE(check.isDue());
  resultOf(check, settings.address);
  EXPECT_FALSE(check.isDue());
  check.keepSettings(settings); // a dialog that was open all the while
  clock = clock.addDays(30).addSecs(-1);
  EXPECT_FALSE(check.isDue());
  clock = clock.addSecs(1);
  EXPECT_TRUE(check.isDue());
  settings.isOn = false;
  check.keepSettings(settings);
  EXPECT_FALSE(check.isDue());
  settings.isOn = true;
  settings.address = "http://folivex.example/";
  check.keepSettings(settings);
  EXPECT_FALSE(check.isDue());
  settings.address = "https://folivex.example/ü";
  settings.intervalDays = 7;
  check.keepSettings(settings);
  clock = clock.addDays(-31);
  EXPECT_TRUE(UpdateCheck(memory, surroundings()).isDue()) << "the clock was wrong before";
  settings.lastCheck = check.settings().lastCheck;
  EXPECT_TRUE(check.settings() == settings);
  memory.setValue("updates/days", "-5");
  memory.setValue("updates/lastCheck", "yesterday");
  EXPECT_EQ(check.settings().intervalDays, UpdateSettings::leastDays);
  EXPECT_FALSE(check.settings().lastCheck.isValid());
}

TEST_F(UpdateCheckRun, OnlyTheLastOneIsToldAndNoneOnceStopped) {
  UpdateCheck check(memory, surroundings());
  bool isLateTold = false;
  check.start(secure("/hang"), [&isLateTold](const UpdateResult&) { isLateTold = true; });
  EXPECT_TRUE(check.isRunning());
  EXPECT_EQ(resultOf(check, secure("/newer")).outcome, UpdateOutcome::Newer);
  check.start(secure("/newer"), [&isLateTold](const UpdateResult&) { isLateTold = true; });
  check.stop();
  EXPECT_FALSE(check.isRunning());
  resultOf(check, secure("/same"));
  check.start(secure("/hang"), [&isLateTold](const UpdateResult&) { isLateTold = true; });
  EXPECT_FALSE(isLateTold); // and its end does not wait for the server
}

} // namespace

} // namespace folivex
