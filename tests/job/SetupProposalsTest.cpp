// Setups that are proposed for piles of documents, planned as a run would.
#include "engine/job/SetupProposals.h"
#include "engine/job/SourceTable.h"
#include "tests/support/Rows.h"
#include "tests/support/RunBench.h"

using namespace folivex;
using namespace folivex::test;

namespace {

/// Documents of so many pages each, in `first` and `next` a line for each "h,v text". {n} is the
/// document's name, {d} its number, {p} the page, {c} of how many, {f} of the file, {u} uneven
/// print, {t} a number that the ninth and the tenth document share.
class Pile {
public:
  Pile(const QString& first, const QString& next, const QString& counts) {
    for (const QString& count : counts.split(u' ')) {
      const QString name = QStringLiteral("K%1").arg(41707 + 977 * ranges.size());
      for (int page = 1; page <= count.toInt(); ++page) {
        PdfPage made;
        for (QString line : (page == 1 ? first : next).split(u'|', Qt::SkipEmptyParts)) {
          line.replace("{n}", name).replace("{d}", QString::number(ranges.size() + 1));
          line.replace("{p}", QString::number(page)).replace("{c}", count);
          line.replace("{f}", QString::number(pdf.pages.size() + 1));
          line.replace("{u}", QString::number(pdf.pages.size() % 3));
          line.replace("{t}",
                       QString::number(ranges.size() < 9 ? ranges.size() : ranges.size() - 1));
          made.texts.push_back({line.section(u',', 0, 0).toInt(),
                                line.section(u' ', 0, 0).section(u',', 1).toInt(),
                                line.section(u' ', 1)});
        }
        pdf.pages.push_back(made);
      }
      const auto last = static_cast<int>(pdf.pages.size());
      ranges += QStringLiteral("%1-%2").arg(last - count.toInt() + 1).arg(last);
      sheetless += QStringLiteral("%1-%2").arg(last - count.toInt() + 2).arg(last);
      names += name;
    }
  }

  TextPdf pdf;
  QStringList ranges;
  QStringList sheetless; ///< ranges without their first pages
  QStringList names;
};

class SetupProposals : public RunBench {
protected:
  std::vector<SetupProposal> proposed() {
    SourceTable file(*RealLibraries::get().text);
    const auto isWanted = [] { return true; };
    const std::shared_ptr<WordTable> table = file.follow(setup());
    EXPECT_TRUE(table->waitUntilOpen(isWanted));
    for (int page = 1; page <= table->pageCount(); ++page) {
      EXPECT_TRUE(table->waitForPage(page, isWanted));
    }
    return proposeSetups(*table, setup(), isWanted);
  }

  /// What a run with the proposal would do.
  SplitPlan planOf(const SetupProposal& proposal) {
    const QString path = at("proposed.fxs");
    SetupStore store;
    store.edited() = store.working() = proposal.setup;
    EXPECT_EQ(store.SaveSetup(path, SavePath::Keep).note, "");
    EXPECT_TRUE(m_store.LoadSetup(path).ok());
    return driver().Plan();
  }
};

} // namespace

TEST_F(SetupProposals, FindThePapersOfAPile) {
  forEachRow("job/proposals.json", [&](const SplitSetup&, const QStringList& row) {
    const Pile pile(row[0], row[1], row[2]);
    const QStringList expected = row[3].split(u' ');
    pile.pdf.write(source());
    setup() = SplitSetup();
    setup().fileName = source();
    setup().outputDir = at("out");
    const std::vector<SetupProposal> all = proposed();
    for (const SetupProposal& proposal : all) {
      EXPECT_FALSE(proposal.sure && expected[0] == "doubt") << proposal.reason.toStdString();
    }
    if (expected[0] == "none" || expected[0] == "doubt") {
      EXPECT_TRUE(expected[0] == "doubt" || all.empty());
      return;
    }
    ASSERT_FALSE(all.empty());
    EXPECT_TRUE(all[0].sure || expected[0] == "any") << all[0].reason.toStdString();
    QStringList ranges;
    QStringList names;
    for (const PlannedOutput& output : planOf(all[0]).outputs) {
      ranges += QStringLiteral("%1-%2").arg(output.firstPage).arg(output.lastPage);
      names += QFileInfo(output.path).completeBaseName();
    }
    const bool sheets = expected.value(1) == "sheets";
    EXPECT_EQ(ranges, sheets ? pile.sheetless : pile.ranges) << all[0].reason.toStdString();
    if (expected.value(1) != "unnamed") {
      EXPECT_EQ(names, pile.names) << all[0].reason.toStdString();
    }
    EXPECT_EQ(all[0].documents, pile.ranges.size());
    EXPECT_EQ(all[0].pagesLeft, sheets ? pile.ranges.size() : 0);
  });
}
