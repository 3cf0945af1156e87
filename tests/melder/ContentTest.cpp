// What an appended part keeps, seen by readers that share no code with the library.
#include "tests/melder/Workshop.h"

using namespace folivex::test;

using Content = Workshop;

TEST_F(Content, PagesFollowInOrderWhateverTheKindOfFile) {
  const QStringList plain{"plain 1", "plain 2", "plain 3"};
  for (const char* name : {"plain.pdf", "packed.pdf", "linear.pdf", "open-locked.pdf"}) {
    SCOPED_TRACE(name);
    const QString file = receiver(name, {"one.pdf", "packed.pdf", "open-locked.pdf"});
    const QStringList seen = look(file);
    EXPECT_EQ(facts(seen, "text"), plain + QStringList("one") + plain + plain);
    const bool isLocked = QLatin1String(name) == QLatin1String("open-locked.pdf");
    // The part that was protected in the newest way asks for a newer reader.
    EXPECT_EQ(facts(seen, "file"), QStringList(isLocked ? "locked 1.7" : "open 1.7"));
  }
}

TEST_F(Content, PagesNeitherTakeNorLoseWhatTheyInherit) {
  const QStringList seen = look(receiver("flat.pdf", {"turned.pdf", "one.pdf"}));
  EXPECT_EQ(facts(seen, "shape"),
            (QStringList{"180 300 842", "180 300 842", "90 780 390", "90 300 300", "0 595 842"}));
  EXPECT_EQ(facts(seen, "text"), (QStringList{"flat 1", "flat 2", "turned 1", "", "one"}));
}

TEST_F(Content, LinksNamesBookmarksAndLabelsStayWithTheirPart) {
  const QStringList seen = look(receiver("linked.pdf", {"linked.pdf", "plain.pdf"}));
  EXPECT_EQ(facts(seen, "link"),
            (QStringList{"1 to 3", "1 to 3", "2 to 2", "3 to 1", "3 to nowhere", //
                         "4 to 6", "4 to 6", "5 to 5", "6 to 4", "6 to nowhere"}));
  EXPECT_EQ(facts(seen, "destination"),
            (QStringList{"p0000004.old style 5", "p0000004.place0 4", "p0000004.place1 5",
                         "p0000004.place2 6", "place0 1", "place1 2", "place2 3"}));
  EXPECT_EQ(facts(seen, "bookmark"),
            (QStringList{"1 Chapter 1 1", "1 Chapter 2 2", "2 Chapter 3 3", //
                         "1 Chapter 1 4", "1 Chapter 2 5", "2 Chapter 3 6"}));
  EXPECT_EQ(facts(seen, "label"), (QStringList{"i", "ii", "A-1", "i", "ii", "A-1", "7", "8", "9"}));
  EXPECT_EQ(facts(seen, "title"), QStringList("linked"));
}

TEST_F(Content, NamesThatAreFreeStayAndPagesWithoutLabelsAreCounted) {
  const QStringList seen = look(receiver("plain.pdf", {"linked.pdf"}));
  EXPECT_EQ(facts(seen, "destination"),
            (QStringList{"old style 5", "place0 4", "place1 5", "place2 6"}));
  EXPECT_EQ(facts(seen, "label"), (QStringList{"1", "2", "3", "i", "ii", "A-1"}));
}

/// Whether its name is taken or free, every field arrives, is its own and is edited in its font.
TEST_F(Content, FieldsOfOneNameStayIndependent) {
  const QStringList seen = look(receiver("plain.pdf", {"form.pdf", "form-other.pdf", "form.pdf"}));
  EXPECT_EQ(facts(seen, "field"),
            (QStringList{"4 Total 12.50 /Helvetica", "4 Paid /Yes /Helvetica",
                         "5 Total+1 99.00 /Times-Roman", "5 Late /Yes /Times-Roman",
                         "6 Total+2 12.50 /Helvetica", "6 Paid+1 /Yes /Helvetica"}));
  EXPECT_EQ(facts(seen, "fields"), QStringList("Total Paid Total+1 Late Total+2 Paid+1"));
}

TEST_F(Content, EqualLayersBecomeOneAndHiddenOnesStayHidden) {
  const QStringList seen = look(receiver("plain.pdf", {"layers.pdf", "layers.pdf"}));
  EXPECT_EQ(facts(seen, "layer"), (QStringList{"Seen shown listed", "Unseen hidden listed"}));
  EXPECT_EQ(facts(seen, "text").mid(3),
            (QStringList{"layers 1 / layer seen", "layers 1 / layer seen"}));
}

TEST_F(Content, AFileCanBeAppendedToItselfAgainAndAgain) {
  const QString file = receiver("linked.pdf");
  for (int times = 0; times < 3; ++times) {
    ASSERT_EQ(append(file, file), MELDER_OK) << lastError();
  }
  const QStringList seen = look(file);
  EXPECT_EQ(facts(seen, "text").size(), 24);
  EXPECT_EQ(facts(seen, "bookmark").size(), 24);
  EXPECT_EQ(facts(seen, "destination").size(), 31);
  EXPECT_EQ(facts(seen, "link").mid(35),
            (QStringList{"22 to 24", "22 to 24", "23 to 23", "24 to 22", "24 to nowhere"}));
}

TEST_F(Content, FontsThatRepeatAreThereOnce) {
  const QString file = receiver("one.pdf");
  for (int done = 0; done < 20; ++done) {
    ASSERT_EQ(append(sample("one.pdf"), file), MELDER_OK) << lastError();
  }
  EXPECT_LT(contentOf(file).size(), 2 * contentOf(sample("one.pdf")).size());
  EXPECT_EQ(pageTexts(file).count("one"), 21);
  // Another font of the same name is another font.
  EXPECT_EQ(pageTexts(receiver("plain.pdf", {"one.pdf", "one-other.pdf", "one.pdf"})).mid(3),
            (QStringList{"one", "two", "one"}));
}

TEST_F(Content, TwoFilesGiveANewOne) {
  const QString target = at("zusammen \u2192 .pdf");
  const auto join = [&](const QString& first, const QString& second) {
    return getAppendPDFFile(utf16(first), utf16(second), utf16(target)) != 0;
  };
  ASSERT_TRUE(join(sample("plain.pdf"), sample("one.pdf"))) << lastError();
  EXPECT_EQ(pageTexts(target), (QStringList{"plain 1", "plain 2", "plain 3", "one"}));
  ASSERT_TRUE(join(sample("open-locked.pdf"), target)) << lastError();
  EXPECT_EQ(facts(look(target), "file"), QStringList("locked 1.7"));
  EXPECT_FALSE(join(sample("plain.pdf"), sample("locked.pdf")));
  EXPECT_EQ(GetStatus(), MELDER_WRONG_PASSWORD);
  EXPECT_EQ(pageTexts(target).size(), 7);
}
