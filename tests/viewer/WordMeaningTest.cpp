// What a word pointed at is taken for comes true in the plan.
#include "ViewerBench.h"

#include "tests/support/Rows.h"

namespace folivex::test {
namespace {

class WordMeanings : public ViewerBench {
protected:
  /// "12: 1-3 10472, 4-4 10518": how many outputs, and the first two.
  QString planned() {
    m_store.commit();
    const SplitPlan plan = m_driver->Plan();
    QStringList told;
    for (const PlannedOutput& output : plan.outputs) {
      if (told.size() < 2) {
        told += QStringLiteral("%1-%2 %3")
                    .arg(output.firstPage)
                    .arg(output.lastPage)
                    .arg(QFileInfo(output.path).completeBaseName());
      }
    }
    return QStringLiteral("%1: %2").arg(plan.outputs.size()).arg(told.join(", "));
  }
};

TEST_F(WordMeanings, OfAWordComeTrueInThePlan) {
  std::pair<Meaning, Picked> meant;
  m_viewer.onMeant = [&](Meaning meaning, const Picked& picked) { meant = {meaning, picked}; };
  forEachRow("viewer/meanings.json", [&](SplitSetup start, const QStringList& row) {
    start.fileName = samplePath();
    start.outputDir = at("out");
    open({samplePath(), {}, start.rotated});
    QTest::mouseClick(&canvas(), Qt::LeftButton, {}, placeOf(word(row[1].toUtf8())));
    QString entry;
    for (const Meaning one : meaningsOf({{}, row[1]})) {
      const QString text = meaningText(one);
      entry = QString(text).remove(u'&') == row[0] ? text : entry;
    }
    choose("wordMenu", entry);
    setup() = start;
    EXPECT_FALSE(takeMeaning(setup(), meant.first, meant.second).isEmpty());
    if (row[2] == "unchanged") {
      EXPECT_EQ(setup(), start);
      return;
    }
    EXPECT_EQ(planned(), row[2]) << changedLines(setup()).join(u'|').toStdString();
  });
}

TEST_F(WordMeanings, OfAnAreaComeTrueInThePlan) {
  openSample();
  const ViewedWord number = word("10472");
  const Picked here{{number.h - 3, number.h + 3, number.v - 1, number.v + 1}};
  setup().extract = fileNameMethodTexts()[0];
  setup().prefixFileName.clear();
  takeMeaning(setup(), Meaning::AreaBegins, here);
  EXPECT_EQ(planned(), "12: 1-3 10472, 4-4 10518");
  setup().findString = QStringLiteral("Account:");
  takeMeaning(setup(), Meaning::AreaSearched, here);
  EXPECT_EQ(planned(), "0: ") << "the word stands beside the area";
  const ViewedWord label = word("Account:");
  takeMeaning(setup(), Meaning::AreaSearched, {{label.h, label.h, label.v, label.v}});
  takeMeaning(setup(), Meaning::AreaNames, here);
  EXPECT_EQ(planned(), "12: 1-3 10472_1, 4-4 10518_4");
}

TEST_F(WordMeanings, OfAnAddressLeaveNoOtherPlaceInTheWay) {
  const Picked label{{371, 371, 150, 150}, "E-mail:"};
  const Picked area{{371, 500, 140, 160}};
  SplitSetup mail;
  mail.emailMatchVert = 700;
  mail.emailHorizBeforeText = QStringLiteral("x");
  takeMeaning(mail, Meaning::AddressBehind, label);
  EXPECT_EQ(changedLines(mail), QStringList("EMAILHORIZAFTERTEXT;E-mail:"));
  mail.rotated = true; // h and v of a search are swapped, those of an address are not
  takeMeaning(mail, Meaning::AreaAddress, area);
  mail.rotated = false;
  EXPECT_EQ(changedLines(mail).join(u'|'),
            "EMAILMATCHVERT;371|EMAILMATCHVERTTO;500|EMAILMATCHHORIZFROM;140|"
            "EMAILMATCHHORIZTO;160");
  const Picked atEdge{{0, 0, 5, 5}, "x"};
  for (const Meaning meaning : meaningsOf(atEdge)) { // 0 and less mean other things in a search
    EXPECT_EQ(canMean(meaning, atEdge),
              meaning != Meaning::BeginsHere && meaning != Meaning::PlaceNames);
  }
}

} // namespace
} // namespace folivex::test
