// Which file an output goes to when its name is taken.
#include "engine/naming/OutputReservation.h"
#include "tests/support/Programs.h"
#include "tests/support/Rows.h"

#include <QSet>
#include <QTemporaryDir>

namespace folivex::test {
using namespace Qt::StringLiterals;

namespace {

/// A disk in memory that counts how often it is asked.
class CountingPlaces : public OutputPlaces {
public:
  bool exists(const QString& path) override {
    ++asked;
    return files.contains(path);
  }
  bool isProtected(const QString& path) override { return path == source; }

  QSet<QString> files;
  QString source;
  int asked = 0;
};

/// Writes down what it is told, as "first-last path".
class RecordingList : public OutputList {
public:
  void output(const ReservedOutput& reserved) override { outputs += text(reserved); }
  void replaced(const ReservedOutput& lost) override { replacedOutputs += text(lost); }

  QStringList outputs;
  QStringList replacedOutputs;

private:
  static QString text(const ReservedOutput& output) {
    return QStringLiteral("%1-%2 %3").arg(output.firstPage).arg(output.lastPage).arg(output.path);
  }
};

QString path(const QString& name) {
  return u"/out/"_s + name + u".pdf"_s;
}

QString withoutFolders(const QStringList& texts, QChar separator) {
  return texts.join(separator).remove(u"/out/"_s).remove(u".pdf"_s);
}

// On disk, asked for; reserved, handed on, given up. Output N has the pages N to 10 N.
TEST(Reservation, Rows) {
  forEachRow("naming/reservations.json", [](const SplitSetup& setup, const QStringList& row) {
    CountingPlaces places;
    RecordingList list;
    FileSystemRules rules;
    rules.caseSensitivity = setup.ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
    for (const QString& name : row[0].split(u' ')) {
      places.files += path(name);
    }
    places.source = path(u"source"_s);
    OutputReservation reservation({setup.alwaysOverwrite, setup.alwaysAppend}, places, list, rules);
    QStringList reserved;
    for (int page = 1; const QString& name : row[1].split(u' ')) {
      reserved += reservation.reserve(path(name), page, 10 * page);
      ++page;
    }
    EXPECT_EQ(withoutFolders(reserved, u' '), row[2]);
    EXPECT_EQ(list.outputs.size(), setup.alwaysOverwrite ? 0 : reserved.size()) << "who waits";
    reservation.flush();
    reservation.flush();
    EXPECT_EQ(withoutFolders(list.outputs, u'|'), row[3]);
    EXPECT_EQ(withoutFolders(list.replacedOutputs, u'|'), row[4]);
  });
}

TEST(Reservation, looksAtEveryNumberOnce) {
  CountingPlaces places;
  RecordingList list;
  const QString plain = path(u"a"_s);
  constexpr int old = 1'000;
  constexpr int count = 5'000;
  places.files.insert(plain);
  for (int part = 2; part <= old; ++part) {
    places.files.insert(u"/out/a_part%1.pdf"_s.arg(part, 3, 10, QLatin1Char('0')));
  }
  OutputReservation reservation({false, false}, places, list, {});
  QSet<QString> paths;
  for (int i = 0; i < count; ++i) {
    paths.insert(reservation.reserve(plain, i + 1, i + 1));
  }
  EXPECT_EQ(paths.size(), count);
  EXPECT_TRUE(paths.contains(u"/out/a_part1001.pdf"_s));
  EXPECT_TRUE(paths.contains(u"/out/a_part6000.pdf"_s));
  EXPECT_LE(places.asked, old + 2 * count) << "the plain path and one number for each output";
}

TEST(Reservation, handsOnWhenFiftyThousandWait) {
  CountingPlaces places;
  RecordingList list;
  OutputReservation reservation({true, false}, places, list, {});
  constexpr int limit = 50'000;
  for (int i = 1; i < limit; ++i) {
    reservation.reserve(QStringLiteral("/out/%1.pdf").arg(i % 100), i, i);
  }
  EXPECT_TRUE(list.outputs.empty());
  reservation.reserve(u"/out/end.pdf"_s, limit, limit);
  ASSERT_EQ(list.outputs.size(), limit);
  EXPECT_EQ(list.replacedOutputs.size(), limit - 101);
  // The last hundred, each the last of its name.
  EXPECT_EQ(list.outputs[limit - 102], u"-1-49899 "_s);
  EXPECT_EQ(list.outputs[limit - 101], u"49900-49900 /out/0.pdf"_s);

  reservation.reserve(u"/out/end.pdf"_s, 1, 1);
  EXPECT_EQ(list.outputs.size(), limit) << "the count did not start again";
}

TEST(DiskPlaces, seeWhatIsThere) {
  const QTemporaryDir folder;
  const auto at = [&](const QString& name) { return folder.filePath(name); };
  writeFile(at(u"source.pdf"_s), "x");
  writeFile(at(u"old.pdf"_s), "x");
  ASSERT_TRUE(QFile::link(at(u"source.pdf"_s), at(u"link.pdf"_s)));
  ASSERT_TRUE(QFile::link(at(u"gone.pdf"_s), at(u"dangling.pdf"_s)));
  ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder.pdf"_s));

  DiskOutputPlaces places({at(u"source.pdf"_s)});
  for (const QString& name : {u"old.pdf"_s, u"dangling.pdf"_s, u"folder.pdf"_s}) {
    EXPECT_TRUE(places.exists(at(name))) << name.toStdString();
    EXPECT_FALSE(places.isProtected(at(name))) << name.toStdString();
  }
  EXPECT_FALSE(places.exists(at(u"new.pdf"_s)));
  EXPECT_TRUE(places.isProtected(at(u"link.pdf"_s)));
  EXPECT_TRUE(places.isProtected(folder.path() + u"/./source.pdf"_s));
}

} // namespace
} // namespace folivex::test
