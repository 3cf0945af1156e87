// Pointing at words: what the viewer tells is what the engine finds.
#include "ViewerBench.h"

#include "tests/support/Rows.h"

#include <QClipboard>

namespace folivex::test {
namespace {

class PagePick : public ViewerBench {
protected:
  /// "word|h|v" of every word on page 1, as the engine lists them for a person.
  QStringList listed() {
    m_driver->ListPagePositions(1);
    const QString text = QString::fromUtf8(contentOf(at("tmp/page_positions.txt")));
    QStringList lines;
    for (const QString& line : text.section(QStringLiteral("-----"), -1).split(u'\n')) {
      const QStringList parts = line.split(u'\t');
      if (parts.size() == 3) {
        lines += parts[0].trimmed() + u'|' + parts[1].trimmed() + u'|' + parts[2].trimmed();
      }
    }
    return lines;
  }
  /// Something is drawn there: a wide range of lightness.
  bool hasInk(const QRectF& box) {
    const double scale = canvas().page().pixelsPerPoint;
    const QImage part = canvas().page().image.copy(
        QRectF(box.topLeft() * scale, box.size() * scale).toAlignedRect());
    QList<int> lightness;
    for (int pixel = 0; pixel < part.width() * part.height(); ++pixel) {
      const QColor color = part.pixelColor(pixel % part.width(), pixel / part.width());
      lightness += color.lightness();
    }
    const auto [least, most] = std::minmax_element(lightness.begin(), lightness.end());
    return least != most && *most - *least > 60;
  }
};

/// A row: the page after "page" of PdfBuilder::addText, or nothing for the sample; a word of it;
/// and perhaps where the second word is shown and where a token finds it.
TEST_F(PagePick, WordsAreThoseThatAreListedAndStandWhereTheyAreDrawn) {
  int made = 0;
  forEachRow("viewer/pages.json", [&](const SplitSetup& settings, const QStringList& row) {
    QString path = samplePath();
    if (!row[0].isEmpty()) {
      testpdf::PdfBuilder pdf;
      pdf.addText("F = <</Type/Font/Subtype/Type1/BaseFont/Helvetica>>\nR = <</Font<</F @F>>>>\n"
                  "page /Resources @R" +
                  row[0].toStdString());
      path = at(QString::number(++made));
      pdf.write(path.toStdString());
    }
    setup().fileName = path;
    setup().rotated = settings.rotated;
    open({path, {}, settings.rotated});
    QStringList viewed;
    for (const ViewedWord& one : words()) {
      viewed += QStringLiteral("%1|%2|%3").arg(one.text).arg(one.h).arg(one.v);
      EXPECT_TRUE(hasInk(one.box)) << one.text.toStdString() << " is boxed where nothing is drawn";
    }
    EXPECT_EQ(viewed, listed());
    ASSERT_FALSE(viewed.isEmpty());
    if (row.size() > 2) {
      EXPECT_EQ(QStringLiteral("%1 %2").arg(words()[1].h).arg(words()[1].lookupH), row[2]);
    }

    std::vector<Picked> picked;
    m_viewer.onMeant = [&](Meaning, const Picked& one) { picked.push_back(one); };
    const ViewedWord& one = word(row[1].toLatin1());
    moveTo(placeOf(one));
    EXPECT_EQ(told("wordText"),
              QStringLiteral("h %1, v %2   %3").arg(one.h).arg(one.v).arg(one.text));
    QTest::mouseClick(&canvas(), Qt::LeftButton, Qt::NoModifier, placeOf(one));
    choose("wordMenu", meaningText(Meaning::Begins));
    ASSERT_EQ(picked.size(), 1U);
    EXPECT_EQ(told("wordText"), rangeText(picked[0].range) + "   " + picked[0].text);
  });
}

TEST_F(PagePick, ADraggedRectangleIsAnAreaForWhatIsChosen) {
  openSample();
  std::vector<std::pair<Meaning, PositionRange>> picked;
  m_viewer.onMeant = [&](Meaning meaning, const Picked& area) {
    EXPECT_EQ(area.text, "") << "a drag is no click";
    picked.emplace_back(meaning, area.range);
  };
  // From below and right of the word to above and left of it.
  const ViewedWord account = word("Account:");
  const QPoint from = placeAt(account.h + 20, account.v + 5);
  const QPoint to = placeAt(account.h - 5, account.v - 12);
  QTest::mousePress(&canvas(), Qt::LeftButton, Qt::NoModifier, from);
  moveTo(to, Qt::LeftButton);
  const QString shown = told("wordText");
  EXPECT_TRUE(shown.contains("words in it: 1")) << shown.toStdString();
  QTest::mouseRelease(&canvas(), Qt::LeftButton, Qt::NoModifier, to);
  choose("areaMenu", meaningText(Meaning::AreaNames));
  ASSERT_EQ(picked.size(), 1U);
  const auto [meaning, area] = picked[0];
  EXPECT_EQ(meaning, Meaning::AreaNames);
  const double pointsAPixel = 1 / unitsPerPoint(canvas().page().size, {});
  for (const int off : {area.hFrom - account.h + 5, area.hTo - account.h - 20,
                        area.vFrom - account.v + 12, area.vTo - account.v - 5}) {
    EXPECT_NEAR(off, 0, 1 + pointsAPixel);
  }
  EXPECT_TRUE(shown.startsWith(rangeText(area)));

  // Out of the page's top: no position is below 1, which would mean something else in a search.
  QTest::mousePress(&canvas(), Qt::LeftButton, Qt::NoModifier, placeAt(40, 40));
  moveTo(QPoint(1, 1), Qt::LeftButton);
  QTest::mouseRelease(&canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 1));
  choose("areaMenu", meaningText(Meaning::AreaSearched));
  ASSERT_EQ(picked.size(), 2U);
  EXPECT_EQ(picked[1].second.hFrom, 1);
  EXPECT_EQ(picked[1].second.vFrom, 1);
}

TEST_F(PagePick, TheKeyboardGoesFromWordToWordAndOpensTheMenu) {
  openSample();
  canvas().setFocus();
  QStringList picked;
  m_viewer.onMeant = [&](Meaning meaning, const Picked& word) {
    picked += word.text + (meaning == Meaning::Begins ? "" : "?");
  };
  key(Qt::Key_Return); // there is no cursor yet
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  for (const auto& [step, modifiers] :
       {std::pair{Qt::Key_Right, Qt::NoModifier}, std::pair{Qt::Key_Tab, Qt::NoModifier},
        std::pair{Qt::Key_Backtab, Qt::ShiftModifier}}) {
    key(step, modifiers);
    key(Qt::Key_Return);
    QTest::keyClick(menu("wordMenu"), Qt::Key_Return); // its first entry
  }
  EXPECT_EQ(picked, QStringList({words()[0].text, words()[1].text, words()[0].text}));
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(&canvas(), &menuKey);
  QTest::keyClick(menu("wordMenu"), Qt::Key_Escape);
  EXPECT_EQ(canvas().currentWord(), 0) << "Escape closes the menu only";

  const ViewedWord account = word("Account:");
  QTest::mouseClick(&canvas(), Qt::LeftButton, Qt::NoModifier, placeOf(account));
  choose("wordMenu", "&Copy h,v"); // as a token takes it
  EXPECT_EQ(QApplication::clipboard()->text(),
            QStringLiteral("%1,%2").arg(account.h).arg(account.v));
  EXPECT_EQ(told("toldText"), QStringLiteral("Copied: %1,%2").arg(account.h).arg(account.v));
  key(Qt::Key_Down);
  key(Qt::Key_Down);
  EXPECT_TRUE(told("wordText").endsWith("Customer:") || told("wordText").endsWith("E-mail:"))
      << told("wordText").toStdString();
  EXPECT_EQ(canvas().accessibleDescription(), told("wordText"));
  key(Qt::Key_Escape);
  EXPECT_EQ(canvas().currentWord(), -1);
  EXPECT_TRUE(m_viewer.isVisible()) << "Escape takes the cursor away first";
  canvas().setFocus();
  key(Qt::Key_Tab);
  EXPECT_FALSE(canvas().hasFocus()) << "Tab leaves the page when no cursor is there";
}

TEST_F(PagePick, WordsOfThePlanSayWhatTheyAreFor) {
  openSample();
  const ViewedWord account = word("Account:");
  const auto index = static_cast<int>(&word("Account:") - words().data());
  using Kind = PlanMark::Kind;
  const auto marks = std::make_shared<const std::vector<PlanMark>>(std::vector<PlanMark>{
      {1, account.text, account.h, account.v, Kind::Begins},
      {1, words()[static_cast<std::size_t>(index) + 1].text,
       words()[static_cast<std::size_t>(index) + 1].h, account.v, Kind::Names},
      {3, account.text, account.h, account.v, Kind::Ends}});
  const QImage before = canvas().grab().toImage();
  m_viewer.setMarks(marks);
  EXPECT_NE(canvas().grab().toImage(), before);
  EXPECT_EQ(canvas().markText(index), "a document begins here");
  EXPECT_EQ(canvas().markText(index + 1), "names the file");
  moveTo(placeOf(account));
  EXPECT_TRUE(told("wordText").endsWith("(a document begins here)"));
  m_viewer.goToPage(2);
  ASSERT_TRUE(isDrawn());
  for (std::size_t i = 0; i < words().size(); ++i) {
    EXPECT_EQ(canvas().markText(static_cast<int>(i)), "") << "marks are those of their page";
  }
}

} // namespace
} // namespace folivex::test
