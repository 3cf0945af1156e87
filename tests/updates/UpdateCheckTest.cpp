// What is made of a server's answer, and asking it off this thread.
#include "updates/UpdateCheck.h"
#include "tests/support/WindowBench.h"
#include "tests/updates/KeptInMemory.h"
#include "tests/updates/UpdateBench.h"
#include "updates/VersionNumber.h"

namespace folivex {

namespace {

TEST(VersionNumber, Order) {
  const QStringList ascending = {QStringLiteral("0.9"),           QStringLiteral("4.9.2"),
                                 QStringLiteral("4.10.0-alpha"),  QStringLiteral("4.10.0-alpha.1"),
                                 QStringLiteral("4.10.0-beta.2"), QStringLiteral("4.10.0-beta.11"),
                                 QStringLiteral("4.10.0-rc.1"),   QStringLiteral("4.10.0"),
                                 QStringLiteral("4.10.0.1"),      QStringLiteral("v5")};
  for (qsizetype i = 0; i < ascending.size(); i++) {
    for (qsizetype j = 0; j < ascending.size(); j++) {
      EXPECT_TRUE((*VersionNumber::read(ascending[i]) <=> *VersionNumber::read(ascending[j])) ==
                  (i <=> j))
          << ascending[i].toStdString() << " and " << ascending[j].toStdString();
    }
  }
  EXPECT_TRUE(*VersionNumber::read(QStringLiteral("4.1")) ==
              *VersionNumber::read(QStringLiteral("4.1.0+build.7")));
  for (const char* none :
       {"", "four", "4.", "4..1", "4.1-", "4.1 ", "1.2.3.4.5", "99999999999", "4.1\n", "-1"}) {
    EXPECT_FALSE(VersionNumber::read(QString::fromLatin1(none))) << none;
  }
}

TEST(UpdateOffer, TakesNothingHarmfulFromAServer) {
  struct Row {
    const char* fault;
    QByteArray document;
    bool isRead;
    UpdateOffer offer;
  };
  const UpdateOffer bare = {QStringLiteral("4.1.0"), {}, {}};
  const std::vector<Row> rows = {
      {"web page", "<html>", false, {}},
      {"empty", "", false, {}},
      {"list", "[\"4.1.0\"]", false, {}},
      {"number", R"({"version": 4.1})", false, {}},
      {"text", R"({"version": "4.1<b>"})", false, {}},
      {"page of another scheme", R"({"version": "4.1.0", "page": "file:///etc/passwd"})", true,
       bare},
      {"page with a login", R"({"version": "4.1.0", "page": "https://a@b/"})", true, bare},
      {"control characters",
       "{\"version\": \"4.1.0\", \"note\": \" a\\u0007\\u202eb\\nc \"}",
       true,
       {QStringLiteral("4.1.0"), {}, QStringLiteral("ab\nc")}},
      {"nesting", QByteArray(60000, '['), false, {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    UpdateOffer offer;
    EXPECT_EQ(readOffer(row.document, offer).isEmpty(), row.isRead);
    EXPECT_TRUE(offer == row.offer)
        << offer.version.toStdString() << offer.page.toStdString() << offer.note.toStdString();
  }
}

TEST(UpdateSettings, WhenACheckIsDue) {
  const QDateTime last = QDateTime::fromString(QStringLiteral("2026-03-04T12:00:00Z"), Qt::ISODate);
  UpdateSettings settings;
  settings.isOn = true;
  settings.address = QStringLiteral("https://folivex.example/version.json");
  settings.lastCheck = last;
  EXPECT_FALSE(isCheckDue(settings, last.addDays(30).addSecs(-1)));
  EXPECT_TRUE(isCheckDue(settings, last.addDays(30)));
  EXPECT_TRUE(isCheckDue(settings, last.addSecs(-1))) << "the clock was wrong at the last check";
  UpdateSettings never = settings;
  never.lastCheck = {};
  EXPECT_TRUE(isCheckDue(never, last));
  UpdateSettings off = never;
  off.isOn = false;
  EXPECT_FALSE(isCheckDue(off, last));
  UpdateSettings plain = never;
  plain.address = QStringLiteral("http://folivex.example/");
  EXPECT_FALSE(isCheckDue(plain, last));
}

TEST(UpdateSettings, OutliveTheProgramAndWhatStoodThereBefore) {
  test::KeptInMemory memory;
  EXPECT_TRUE(loadSettings(memory) == UpdateSettings()) << "on by itself";
  UpdateSettings settings;
  settings.isOn = true;
  settings.address = QStringLiteral("https://folivex.example/ü");
  settings.intervalDays = 7;
  settings.lastCheck = QDateTime::fromString(QStringLiteral("2026-03-04T12:00:00Z"), Qt::ISODate);
  storeSettings(settings, memory);
  EXPECT_TRUE(loadSettings(memory) == settings);
  memory.setText(QStringLiteral("updates/days"), QStringLiteral("-5"));
  memory.setText(QStringLiteral("updates/lastCheck"), QStringLiteral("yesterday"));
  EXPECT_EQ(loadSettings(memory).intervalDays, UpdateSettings::leastDays);
  EXPECT_FALSE(loadSettings(memory).lastCheck.isValid());
}

class UpdateCheckRun : public test::UpdateBench {
protected:
  UpdateSurroundings surroundings() const {
    UpdateSurroundings here;
    here.ownVersion = QStringLiteral("4.9.2");
    here.certificates = certificate(QStringLiteral("own"));
    here.now = [this] { return clock; };
    return here;
  }

  UpdateResult resultOf(UpdateCheck& check, const QString& address) const {
    std::optional<UpdateResult> told;
    check.start(address, [&told](const UpdateResult& result) { told = result; });
    EXPECT_TRUE(testing::waitUntil([&told] { return told.has_value(); }));
    EXPECT_FALSE(check.isRunning());
    return told.value_or(UpdateResult());
  }

  QDateTime clock = QDateTime::fromString(QStringLiteral("2026-03-04T12:00:00Z"), Qt::ISODate);
  test::KeptInMemory memory;
};

TEST_F(UpdateCheckRun, TellsHowTheVersionsStand) {
  struct Row {
    const char* path;
    UpdateOutcome outcome;
    const char* text;
  };
  for (const Row& row :
       {Row{"/newer", UpdateOutcome::Newer, "Version 4.10.0 is available; this is version 4.9.2."},
        Row{"/same", UpdateOutcome::Same, "This is the newest version, 4.9.2."},
        Row{"/older", UpdateOutcome::Older,
            "This version, 4.9.2, is newer than the published version 4.9.1."},
        Row{"/not-json", UpdateOutcome::Failed,
            "The check failed: the server's answer is no document about a "
            "version."},
        Row{"/missing", UpdateOutcome::Failed,
            "The check failed: the server answers with the status 404."}}) {
    SCOPED_TRACE(row.path);
    UpdateCheck check(memory, surroundings());
    memory.texts.clear();
    const UpdateResult result = resultOf(check, secure(row.path));
    EXPECT_EQ(result.outcome, row.outcome);
    EXPECT_EQ(result.text, QString::fromLatin1(row.text));
    EXPECT_EQ(check.settings().lastCheck,
              row.outcome == UpdateOutcome::Failed ? QDateTime() : clock);
  }
}

TEST_F(UpdateCheckRun, AnAnswerPutsTheNextCheckOff) {
  UpdateCheck check(memory, surroundings());
  UpdateSettings settings;
  settings.isOn = true;
  settings.address = secure("/same");
  check.keepSettings(settings);
  EXPECT_TRUE(check.isDue());
  resultOf(check, settings.address);
  EXPECT_FALSE(check.isDue());
  check.keepSettings(settings); // a dialog that was open all the while
  EXPECT_FALSE(check.isDue());
  clock = clock.addDays(30);
  EXPECT_TRUE(check.isDue());
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
