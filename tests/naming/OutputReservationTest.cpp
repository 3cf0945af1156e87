// Which file an output goes to when its name is taken.
#include "engine/naming/OutputReservation.h"
#include "tests/support/Programs.h"

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
  void remove(const QString& path) override {
    files.remove(path);
    removed += path;
  }

  QSet<QString> files;
  QStringList removed;
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

class Reservation : public testing::Test {
protected:
  OutputReservation when(bool overwrite, bool append, FileSystemRules rules = {}) {
    return {{overwrite, append}, places, list, rules};
  }

  CountingPlaces places;
  RecordingList list;
  const QString plain = QStringLiteral("/out/a.pdf");
};

TEST_F(Reservation, numbersWhatIsOnDiskOrOnItsWay) {
  places.files = {plain, u"/out/a_part003.pdf"_s};
  OutputReservation reservation = when(false, false);
  EXPECT_EQ(reservation.reserve(plain, 1, 2), u"/out/a_part002.pdf"_s);
  EXPECT_EQ(reservation.reserve(plain, 3, 4), u"/out/a_part004.pdf"_s);
  EXPECT_EQ(reservation.reserve(u"/out/b.pdf"_s, 5, 5), u"/out/b.pdf"_s);
  EXPECT_EQ(reservation.reserve(u"/out/b.pdf"_s, 6, 6), u"/out/b_part002.pdf"_s);
  // A document that is really called like that.
  EXPECT_EQ(reservation.reserve(u"/out/b_part002.pdf"_s, 7, 7), u"/out/b_part002_part002.pdf"_s);
  EXPECT_EQ(list.outputs.size(), 5) << "outputs waited";
  EXPECT_EQ(list.outputs.front(), u"1-2 /out/a_part002.pdf"_s);
}

TEST_F(Reservation, looksAtEveryNumberOnce) {
  constexpr int old = 1'000;
  constexpr int count = 5'000;
  places.files.insert(plain);
  for (int part = 2; part <= old; ++part) {
    places.files.insert(u"/out/a_part%1.pdf"_s.arg(part, 3, 10, QLatin1Char('0')));
  }
  OutputReservation reservation = when(false, false);
  QSet<QString> paths;
  for (int i = 0; i < count; ++i) {
    paths.insert(reservation.reserve(plain, i + 1, i + 1));
  }
  EXPECT_EQ(paths.size(), count);
  EXPECT_TRUE(paths.contains(u"/out/a_part1001.pdf"_s));
  EXPECT_TRUE(paths.contains(u"/out/a_part6000.pdf"_s));
  EXPECT_LE(places.asked, old + 2 * count) << "the plain path and one number for each output";
}

TEST_F(Reservation, knowsFileSystemsThatFoldCase) {
  FileSystemRules folding;
  folding.caseSensitivity = Qt::CaseInsensitive;
  OutputReservation reservation = when(false, false, folding);
  EXPECT_EQ(reservation.reserve(u"/out/ÄB.pdf"_s, 1, 1), u"/out/ÄB.pdf"_s);
  EXPECT_EQ(reservation.reserve(u"/out/äb.pdf"_s, 2, 2), u"/out/äb_part002.pdf"_s);
  EXPECT_EQ(reservation.reserve(u"/out/Äb.pdf"_s, 3, 3), u"/out/Äb_part003.pdf"_s);

  OutputReservation exact = when(false, false);
  EXPECT_EQ(exact.reserve(u"/out/B.pdf"_s, 1, 1), u"/out/B.pdf"_s);
  EXPECT_EQ(exact.reserve(u"/out/b.pdf"_s, 2, 2), u"/out/b.pdf"_s);

  OutputReservation overwriting = when(true, false, folding);
  list.outputs.clear();
  overwriting.reserve(u"/out/X.pdf"_s, 1, 1);
  overwriting.reserve(u"/out/x.pdf"_s, 2, 2);
  overwriting.flush();
  EXPECT_EQ(list.outputs.join(u'|'), u"-1-1 |2-2 /out/x.pdf"_s);
}

TEST_F(Reservation, overwritingKeepsTheLastOfEachName) {
  places.files = {plain};
  OutputReservation reservation = when(true, false);
  reservation.reserve(plain, 1, 2);
  EXPECT_EQ(places.removed, QStringList(plain));
  reservation.reserve(u"/out/b.pdf"_s, 3, 3);
  reservation.reserve(plain, 4, 6);
  EXPECT_TRUE(list.outputs.empty());
  reservation.flush();
  EXPECT_EQ(list.outputs.join(u'|'), u"-1-2 |3-3 /out/b.pdf|4-6 /out/a.pdf"_s);
  EXPECT_EQ(list.replacedOutputs, QStringList(u"1-2 /out/a.pdf"_s));
  reservation.flush();
  EXPECT_EQ(list.outputs.size(), 3) << "outputs were handed on twice";
}

TEST_F(Reservation, overwritingAndAppendingWaitsButReplacesNothing) {
  places.files = {plain};
  OutputReservation reservation = when(true, true);
  reservation.reserve(plain, 1, 2);
  reservation.reserve(plain, 3, 4);
  EXPECT_TRUE(list.outputs.empty());
  reservation.flush();
  EXPECT_EQ(list.outputs.join(u'|'), u"1-2 /out/a.pdf|3-4 /out/a.pdf"_s);
  EXPECT_TRUE(places.removed.isEmpty());
}

TEST_F(Reservation, appendingTakesThePathAsItIsAtOnce) {
  places.files = {plain};
  OutputReservation reservation = when(false, true);
  EXPECT_EQ(reservation.reserve(plain, 1, 2), plain);
  EXPECT_EQ(reservation.reserve(plain, 3, 4), plain);
  EXPECT_EQ(list.outputs.size(), 2);
}

TEST_F(Reservation, handsOnWhenFiftyThousandWait) {
  OutputReservation reservation = when(true, false);
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

TEST_F(Reservation, neverTouchesTheSource) {
  places.files = {plain, u"/out/a_part002.pdf"_s};
  places.source = plain;
  OutputReservation overwriting = when(true, false);
  EXPECT_EQ(overwriting.reserve(plain, 1, 1), u"/out/a_part002.pdf"_s);
  EXPECT_EQ(places.removed, QStringList(u"/out/a_part002.pdf"_s));
  places.files.insert(plain);
  OutputReservation appending = when(false, true);
  EXPECT_EQ(appending.reserve(plain, 1, 1), u"/out/a_part002.pdf"_s);
}

TEST(DiskPlaces, seeAndRemoveWhatIsThere) {
  const QTemporaryDir folder;
  const auto path = [&](const QString& name) { return folder.filePath(name); };
  writeFile(path(u"source.pdf"_s), "x");
  writeFile(path(u"old.pdf"_s), "x");
  ASSERT_TRUE(QFile::link(path(u"source.pdf"_s), path(u"link.pdf"_s)));
  ASSERT_TRUE(QFile::link(path(u"gone.pdf"_s), path(u"dangling.pdf"_s)));
  ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder.pdf"_s));

  DiskOutputPlaces places({path(u"source.pdf"_s)});
  for (const QString& name : {u"old.pdf"_s, u"dangling.pdf"_s, u"folder.pdf"_s}) {
    EXPECT_TRUE(places.exists(path(name))) << name.toStdString();
    EXPECT_FALSE(places.isProtected(path(name))) << name.toStdString();
  }
  EXPECT_FALSE(places.exists(path(u"new.pdf"_s)));
  EXPECT_TRUE(places.isProtected(path(u"link.pdf"_s)));
  EXPECT_TRUE(places.isProtected(folder.path() + u"/./source.pdf"_s));

  places.remove(path(u"old.pdf"_s));
  EXPECT_FALSE(places.exists(path(u"old.pdf"_s)));
  places.remove(path(u"folder.pdf"_s));
  EXPECT_TRUE(places.exists(path(u"folder.pdf"_s)));
}

} // namespace
} // namespace folivex::test
