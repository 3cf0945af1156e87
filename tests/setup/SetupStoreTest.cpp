// Loading and saving setups on a real disk.
#include "engine/setup/SetupStore.h"
#include "tests/support/OwnFolder.h"
#include "tests/support/Programs.h"
#include "tests/support/SmallDisk.h"

using namespace folivex;
using namespace folivex::test;

namespace {

/// A store whose example setup is the one that is shipped.
class SetupStoreTest : public OwnFolder {
protected:
  QString defaultFile() const { return at("tmp/Folivex.ini"); }

  QString m_samples = QStringLiteral(FOLIVEX_SOURCE_DIR "/samples");
  SetupStore store{m_samples};
};

} // namespace

TEST_F(SetupStoreTest, ValuesBeforeAnythingWasRead) {
  EXPECT_EQ(store.working().startFromPage, 1);
  EXPECT_TRUE(store.working().alwaysOverwrite && store.working().alwaysAppend);
  store.working().horizWordSpacing = 1.3;
  store.working().stripEnd = 2;
  store.edited().stripEnd = 9;
  store.edited().findString = QStringLiteral("x");
  store.commit();
  EXPECT_EQ(store.working().startFromPage, 0);
  EXPECT_FALSE(store.working().alwaysOverwrite || store.working().alwaysAppend);
  EXPECT_EQ(store.working().findString, QStringLiteral("x"));
  EXPECT_EQ(store.working().horizWordSpacing, 1.3) << "report options have no edited copy";
  EXPECT_EQ(store.working().stripEnd, 2);
  EXPECT_EQ(store.working().outputDir, QDir::homePath() + QStringLiteral("/splitoutput"));
}

TEST_F(SetupStoreTest, SamplesComeBackByteForByte) {
  const QStringList names = QDir(m_samples).entryList({QStringLiteral("*.fxs")});
  ASSERT_FALSE(names.isEmpty());
  for (const QString& name : names) {
    SCOPED_TRACE(name.toStdString());
    SetupStore fresh(m_samples);
    ASSERT_TRUE(fresh.LoadSetup(m_samples + QLatin1Char('/') + name).ok());
    ASSERT_TRUE(fresh.SaveSetup(at(name)).ok());
    EXPECT_EQ(contentOf(at(name)), contentOf(m_samples + QLatin1Char('/') + name));
  }
}

TEST_F(SetupStoreTest, LoadResetsMailAndExternalCommandOnly) {
  writeFile(at("a.fxs"), "FINDSTRING;new \n");
  SplitSetup& setup = store.edited();
  setup.emailEnable = setup.configUseExternal = setup.useOutlookAuto = true;
  setup.emailTest = false;
  setup.emailMatchVertTo = 5;
  setup.emailPassword = setup.configExternalCommand = QStringLiteral("old");
  setup.emailPause = 250;
  setup.pdfPassword = setup.prefixFileName = setup.otherSettingsRemoveText = QStringLiteral("kept");
  SplitSetup expected = defaultSetup();
  expected.emailPause = 250;
  expected.pdfPassword = expected.prefixFileName = expected.otherSettingsRemoveText =
      QStringLiteral("kept");

  const SetupResult missing = store.LoadSetup(at("none.fxs"));
  EXPECT_EQ(missing.status, SetupStatus::NotRead);
  EXPECT_EQ(missing.message, "file error! can't read parameters file: " + at("none.fxs"));
  EXPECT_TRUE(store.edited() == expected);

  EXPECT_TRUE(store.LoadSetup(at("a.fxs")).ok());
  expected.findString = QStringLiteral("new");
  EXPECT_TRUE(store.edited() == expected);
  EXPECT_TRUE(store.working() == expected);
  EXPECT_EQ(store.currentPath(), at("a.fxs"));
}

TEST_F(SetupStoreTest, AutomationCheckSeesTheFirstLineOnly) {
  const auto check = [this](const QByteArray& text, bool atCheck, bool atLoad) {
    SetupStore fresh(m_samples);
    fresh.edited().emailLogin = QStringLiteral("kept");
    writeFile(at("a.fxs"), text);
    EXPECT_TRUE(fresh.LoadSetup(at("a.fxs"), LoadMode::AutomationCheck).ok());
    EXPECT_EQ(fresh.automation(), atCheck) << text.toStdString();
    EXPECT_EQ(fresh.edited().emailLogin, "kept");
    EXPECT_EQ(fresh.edited().findString, "account:");
    EXPECT_EQ(fresh.currentPath(), QString());
    EXPECT_TRUE(fresh.LoadSetup(at("a.fxs")).ok());
    EXPECT_EQ(fresh.automation(), atLoad) << text.toStdString();
    EXPECT_FALSE(fresh.edited().useCurrent);
  };
  check("AUTOMATION;1\nUSECURRENT;1\nFINDSTRING;a", true, true);
  check("UNICODEV4\nAUTOMATION;1\nUSECURRENT;1", false, true);
  check("USECURRENT;0", false, false);
}

TEST_F(SetupStoreTest, WhereASaveGoes) {
  store.edited().findString = QStringLiteral("first");
  EXPECT_EQ(store.SaveSetup(defaultFile()).message, QString()) << "no name that a person chose";
  EXPECT_EQ(store.currentPath(), QString());
  store.edited().emailPassword = QStringLiteral("semi;colon");
  const SetupResult named = store.SaveSetup(at("a.fxs"));
  EXPECT_EQ(named.message, at("a.fxs") + " saved.");
  EXPECT_TRUE(named.note.contains("EMAILPASSWORD") && !named.note.contains("colon"))
      << "a value that will not come back";
  EXPECT_EQ(modeOf(at("a.fxs")), 0600U);

  store.edited().findString = QStringLiteral("second");
  EXPECT_EQ(store.SaveSetup(defaultFile()).message, at("a.fxs") + " saved.");
  EXPECT_TRUE(contentOf(at("a.fxs")).contains("second"));
  EXPECT_TRUE(contentOf(defaultFile()).contains("first"));

  EXPECT_TRUE(store.SaveSetup(defaultFile(), SavePath::Keep).ok());
  EXPECT_TRUE(contentOf(defaultFile()).contains("second"));
  EXPECT_EQ(store.currentPath(), at("a.fxs"));

  store.setUnattended(true);
  EXPECT_EQ(store.SaveSetup(at("b.fxs")).message, QString());
  EXPECT_EQ(store.currentPath(), at("b.fxs"));
}

TEST_F(SetupStoreTest, FailedSaveKeepsTheOldSetup) {
  ASSERT_TRUE(store.SaveSetup(at("a.fxs")).ok());
  const QByteArray old = contentOf(at("a.fxs"));
  store.edited().emailPassword = QStringLiteral("s3cret");
  store.edited().emailMsg = QString(3000, QLatin1Char('x'));

  const SetupResult full = [&] {
    const SmallDisk disk(2000);
    return store.SaveSetup(at("a.fxs"));
  }();
  EXPECT_EQ(full.exitCode(), -5);
  EXPECT_EQ(full.message, "file error! can't write parameters file: " + at("a.fxs"));
  EXPECT_FALSE(full.note.isEmpty() || full.note.contains("s3cret"));
  EXPECT_EQ(contentOf(at("a.fxs")), old);
  EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList({"a.fxs"}));

  const SetupResult nowhere = store.SaveSetup(at("no/folder/a.fxs"));
  EXPECT_EQ(nowhere.exitCode(), -5);
  EXPECT_EQ(store.currentPath(), at("a.fxs"));
}

TEST_F(SetupStoreTest, ExampleServesOnceAsDefault) {
  EXPECT_EQ(store.DefaultSetupPath(), defaultFile());
  EXPECT_EQ(contentOf(defaultFile()), contentOf(m_samples + QStringLiteral("/example.fxs")));
  EXPECT_EQ(modeOf(defaultFile()), 0600U);
  writeFile(defaultFile(), "FINDSTRING;mine \n");
  EXPECT_TRUE(store.LoadSetup(store.DefaultSetupPath()).ok());
  EXPECT_EQ(store.edited().findString, QStringLiteral("mine"));

  ASSERT_TRUE(QFile::remove(defaultFile()));
  SetupStore bare(m_folder.path());
  const SetupResult result = bare.LoadSetup(bare.DefaultSetupPath());
  EXPECT_EQ(result.status, SetupStatus::NotRead);
  EXPECT_EQ(result.message + result.note, QString());
  EXPECT_TRUE(bare.edited() == defaultSetup());
}

TEST_F(SetupStoreTest, PlantedDefaultFileIsNeitherReadNorWritten) {
  writeFile(at("theirs"), "CONFIGUSEEXTERNAL;1 \nCONFIGEXTERNALCOMMAND;evil \n");
  const QByteArray theirs = contentOf(at("theirs"));
  for (const QString& target : {at("theirs"), at("not there")}) {
    ASSERT_TRUE(QFile::link(target, defaultFile()));
    const SetupResult load = store.LoadSetup(store.DefaultSetupPath());
    EXPECT_EQ(load.status, SetupStatus::NotRead);
    EXPECT_TRUE(load.note.contains(defaultFile()));
    EXPECT_FALSE(store.edited().configUseExternal);
    EXPECT_EQ(store.SaveSetup(defaultFile(), SavePath::Keep).exitCode(), -5);
    EXPECT_TRUE(QFileInfo(defaultFile()).isSymLink());
    ASSERT_TRUE(QFile::remove(defaultFile()));
  }
  EXPECT_EQ(contentOf(at("theirs")), theirs);
  EXPECT_FALSE(QFile::exists(at("not there")));
}
