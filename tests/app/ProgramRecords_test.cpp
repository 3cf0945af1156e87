// "--json" by the program as a process: what it tells programs, against the schema and the disk.
#include "engine/base/RunFinding.h"
#include "platform/FileStamp.h"
#include "tests/app/ProgramBench.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/Rows.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace folivex;
using namespace folivex::test;

namespace {

using Records = std::vector<QJsonObject>;

class ProgramRecords : public ProgramBench {
protected:
  /// The lines of a run, each of which must be one that the schema allows.
  Records recordsOf(const QByteArray& out) const {
    EXPECT_TRUE(out.endsWith('\n') && !out.contains("\n\n")) << out.toStdString();
    EXPECT_TRUE(std::ranges::all_of(out, [](char c) { return c == '\n' || (c >= 32 && c < 127); }))
        << "what a terminal obeys, or reads in its own coding";
    writeFile(place.at("lines"), out);
    const ProgramRun check = runProgram("/bin/sh",
                                        {"-c", "exec /usr/bin/python3 " FOLIVEX_SOURCE_DIR
                                               "/tests/app/check_records.py " FOLIVEX_SOURCE_DIR
                                               "/docs/json.schema.json < lines"},
                                        QProcessEnvironment::systemEnvironment(), place.work());
    EXPECT_EQ(check.exitCode, 0) << check.err.toStdString();
    Records records;
    for (const QByteArray& line : out.trimmed().split('\n')) {
      records.push_back(QJsonDocument::fromJson(line).object());
    }
    EXPECT_EQ(records.front()["type"], "begin");
    return records;
  }

  /// Of a run that came to its end.
  Records run(const QStringList& arguments) {
    const ProgramRun run = place.run(QStringList("--json") + arguments);
    m_err = run.err;
    Records records = recordsOf(run.out);
    EXPECT_EQ(records.back()["type"], "end");
    EXPECT_EQ(shown(records.back()["exitCode"].toInt()), run.exitCode) << run.err.toStdString();
    EXPECT_EQ(records.back()["results"].toInt(), int(of("result", records).size()));
    for (const QJsonObject& finding : of("finding", records)) {
      EXPECT_TRUE(run.err.contains(finding["text"].toString().remove(u'\r').toUtf8()))
          << run.err.toStdString();
    }
    return records;
  }

  static Records of(const char* type, const Records& records) {
    Records some;
    std::ranges::copy_if(records, std::back_inserter(some),
                         [type](const QJsonObject& record) { return record["type"] == type; });
    return some;
  }

  QByteArray m_err;
};

/// "1-3 name new text"
QString shownOutput(const QJsonObject& record) {
  return QStringLiteral("%1-%2 %3 %4 %5")
      .arg(record["firstPage"].toInt())
      .arg(record["lastPage"].toInt())
      .arg(QFileInfo(record["path"].toString()).fileName(), record["fate"].toString(),
           record["matchedText"].toString());
}

QStringList shownOutputs(const Records& records) {
  QStringList shown;
  std::ranges::transform(records, std::back_inserter(shown), shownOutput);
  return shown;
}

/// Whether the record tells of the file as it lies there.
bool isOfFile(const QJsonObject& record, const QString& path) {
  const auto stamp = platform::FileStamp::of(path);
  return stamp && record["path"] == path && record["size"].toInteger() == qint64(stamp->size) &&
         record["modified"].toInteger() * 1'000'000'000 +
                 record["modifiedNanoseconds"].toInteger() ==
             stamp->written;
}

/// "inFiles 1-3, leftOver 4-4"; that no page is missing or twice is checked.
QString shownPages(const QJsonObject& result) {
  const QJsonObject pages = result["pages"].toObject();
  QStringList shown;
  int sum = 0;
  for (const QString& fate : pages.keys()) {
    int count = 0;
    for (const QJsonValue& range : pages[fate]["ranges"].toArray()) {
      shown += QStringLiteral("%1 %2-%3").arg(fate).arg(range[0].toInt()).arg(range[1].toInt());
      count += range[1].toInt() - range[0].toInt() + 1;
    }
    EXPECT_EQ(pages[fate]["count"].toInt(), count) << fate.toStdString();
    sum += count;
  }
  EXPECT_EQ(pages["total"].toInt(), sum);
  return shown.join(", ");
}

} // namespace

/// "kind kind", sorted.
QString shownKinds(const Records& findings) {
  QStringList kinds;
  for (const QJsonObject& finding : findings) {
    kinds += finding["kind"].toString();
  }
  kinds.sort();
  return kinds.join(u' ');
}

/// Each way of dealing with names that are taken: what was planned is what was done, what was told
/// is what lies there, page by page.
TEST_F(ProgramRecords, PlanAndRunTellWhatTheDiskHolds) {
  const QString odd = QString::fromUtf8("\xC3\x89\"lo\xC2\x85\\die\xF0\x9F\x93\x84");
  TextPdf pdf;
  pdf.page({"a page in front"});
  for (const QString& account : {QString("A"), QString("B"), odd, QString("A")}) {
    pdf.page({"Account: " + account});
    pdf.page({"more of " + account});
  }
  pdf.write(place.at("in.pdf"));
  const QString out = place.at("out/");
  const struct {
    bool overwrites, appends;
    const char* fates; ///< of A, B, the odd one and A again
    const char* pages;
    const char* found; ///< when it is planned
  } rows[] = {
      {false, false, "new renamed new renamed", "inFiles 2-9, leftOver 1-1",
       "illegiblePages outputsRenamed pagesLeft"},
      {true, false, "givenUp replaces new new", "inFiles 4-9, leftOver 1-1, replaced 2-3",
       "filesReplaced illegiblePages outputsGivenUp pagesLeft"},
      {false, true, "new appends new appends", "inFiles 2-9, leftOver 1-1",
       "illegiblePages outputsAppended pagesLeft"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fates);
    QDir(out).removeRecursively();
    QDir(place.work()).mkdir("out");
    TextPdf().page({"an old page"}).write(out + "B.pdf");
    setup.alwaysOverwrite = row.overwrites;
    setup.alwaysAppend = row.appends;
    const QStringList arguments{fxs(), "-fin.pdf", "-c"};
    const Records planned = run(QStringList("--plan") + arguments);
    EXPECT_EQ(filesBelow(out), QStringList("B.pdf"));
    EXPECT_EQ(shownKinds(of("finding", planned)), row.found);
    const QJsonObject left = of("finding", planned).back();
    EXPECT_EQ(left["pages"], QJsonArray({QJsonArray({1, 1})}));
    const Records done = run(arguments);
    EXPECT_EQ(shownKinds(of("finding", done)), "illegiblePages") << "the odd one";
    const QJsonObject odds = of("finding", done).front();
    EXPECT_EQ(odds["pages"], QJsonArray({QJsonArray({6, 7})}));

    QStringList fates;
    Records kept;
    for (const QJsonObject& output : of("planned", planned)) {
      fates += output["fate"].toString();
      if (output["fate"] != "givenUp") {
        kept.push_back(output);
      }
    }
    EXPECT_EQ(fates.join(u' '), row.fates);
    const Records outputs = of("output", done);
    EXPECT_EQ(shownOutputs(outputs), shownOutputs(kept));
    for (const Records& records : {planned, done}) {
      const QJsonObject result = of("result", records).at(0);
      EXPECT_EQ(shownPages(result), row.pages);
      EXPECT_TRUE(isOfFile(result, place.at("in.pdf")));
      EXPECT_EQ(of("source", records).at(0)["path"], place.at("in.pdf"));
    }

    QMap<QString, QStringList> texts; // that the files must have, by what was told
    const QStringList pages = pageTexts(place.at("in.pdf"));
    for (const QJsonObject& output : outputs) {
      QStringList& text = texts[output["path"].toString()];
      text += output["fate"] == "appends" && text.isEmpty() ? QStringList("an old page")
                                                            : QStringList();
      text += pages.mid(output["firstPage"].toInt() - 1,
                        output["lastPage"].toInt() - output["firstPage"].toInt() + 1);
      EXPECT_TRUE(isOfFile(output, output["path"].toString()));
    }
    for (auto file = texts.begin(); file != texts.end(); ++file) {
      EXPECT_EQ(pageTexts(file.key()), file.value()) << file.key().toStdString();
    }
    const QJsonObject result = of("result", done).at(0);
    EXPECT_EQ(result["files"].toInt(), texts.size());
    EXPECT_EQ(filesBelow(out).size(), texts.size() + (row.overwrites || row.appends ? 0 : 1));
    for (const char* kind : {"text", "csv"}) {
      const QString report = result["reports"][kind]["path"].toString();
      EXPECT_TRUE(contentOf(report).contains("B_part") == !(row.overwrites || row.appends));
    }
  }
}

TEST_F(ProgramRecords, PartsTellEachPageOnceBetweenThem) {
  source("in.pdf", {"A", "B", "A", "C"});
  const struct {
    const char* range;
    QStringList outputs;
    const char* pages;
  } rows[] = {
      {"1-2", {"1-1 A.pdf new A", "2-2 B.pdf new B"}, "elsewhere 3-4, inFiles 1-2"},
      {"3-9", {"3-3 A_part002.pdf renamed A", "4-4 C.pdf new C"}, "elsewhere 1-2, inFiles 3-4"}};
  for (const auto& row : rows) {
    for (const QString& type : {QString("planned"), QString("output")}) {
      const QString plan = type == "planned" ? "--plan" : "-c";
      const Records records = run({plan, fxs(), "-fin.pdf", "--pages", row.range});
      EXPECT_EQ(shownOutputs(of(type.toLatin1(), records)), row.outputs);
      EXPECT_EQ(shownPages(of("result", records).at(0)), row.pages);
    }
  }
}

TEST_F(ProgramRecords, RefusedSourcesSayWhyAndTheOthersGoOn) {
  source("good.pdf", {"G"});
  writeFile(place.at("damaged.pdf"), "no PDF");
  ASSERT_EQ(runProgram("qpdf", {"--encrypt", "secret", "owner", "256", "--", place.at("good.pdf"),
                                place.at("locked.pdf")})
                .exitCode,
            0);
  const QString setupFile = fxs();
  QDir(place.work()).mkdir("out");
  for (const QString& work : {QString("--plan"), QString("--unsure")}) {
    SCOPED_TRACE(work.toStdString());
    const Records records = run({work, setupFile, "-fdamaged.pdf", "-flocked.pdf", "-fgood.pdf",
                                 "-unowhere.fxs", "-fgood.pdf", "-fnever.pdf"});
    QStringList told;
    for (const QJsonObject& record : records) {
      told += QStringList{record["source"].toVariant().toString(), record["type"].toString(),
                          record["kind"].toString(), record["error"].toString(),
                          QFileInfo(record["path"].toString()).fileName()}
                  .join(u' ')
                  .simplified();
    }
    const QString output = work != "--plan" ? "3 output G.pdf" : "3 planned G.pdf";
    EXPECT_EQ(told, (QStringList{"begin", "1 source damaged.pdf", "1 finding unreadable",
                                 "1 result unreadable damaged.pdf", "2 source locked.pdf",
                                 "2 finding unreadable", "2 result unreadable locked.pdf",
                                 "3 source good.pdf", output, "3 result none good.pdf",
                                 "4 source good.pdf", "4 finding setupMissing",
                                 "4 result setupMissing good.pdf", "end setupMissing"}));
    EXPECT_TRUE(isOfFile(of("result", records).at(1), place.at("locked.pdf")));
    EXPECT_FALSE(of("result", records).at(1).contains("pages"));
  }
  setup.findString = "two words";
  setup.pageExtract = splitMethodTexts()[2];
  const Records refused = run({fxs(), "-fgood.pdf", "-f/no/such/folder/*"});
  EXPECT_EQ(of("result", refused).at(0)["error"], "contradiction");
  EXPECT_EQ(refused.back()["error"], "sourceMissing");
  EXPECT_FALSE(of("finding", refused).back().contains("source"));
}

TEST_F(ProgramRecords, WhatIsFoundHasItsKind) {
  TextPdf().page().page().write(place.at("scan.pdf"));
  source("good.pdf", {"A"});
  QDir(place.work()).mkdir("in");
  ASSERT_TRUE(QFile::link("nowhere", place.at("in/broken.pdf")));
  const Records search = run({"-x", fxs(), "-fin/*", "-c"});
  EXPECT_EQ(shownKinds(of("finding", search)), "arguments search search search");
  EXPECT_EQ(search.back()["error"], "sourceMissing");
  EXPECT_EQ(shownKinds(of("finding", run({fxs(), "-fscan.pdf", "-c"}))), "noMatch noText");
  setup.findString = "account:";
  EXPECT_EQ(shownKinds(of("finding", run({fxs(), "-fgood.pdf", "-c"}))), "nearMiss noMatch");
  setup.findString = "Account:";
  setup.offsetFirst = 1;
  EXPECT_EQ(shownKinds(of("finding", run({fxs(), "-fgood.pdf", "-c"}))), "rangeEmptied");
}

/// Names of another system's code page: no byte is lost, and where the outputs lie can be found.
TEST_F(ProgramRecords, PathsThatAreNoTextAreToldByTheirBytes) {
  source("in.pdf", {"A"});
  setup.outputDir = "out";
  const QString script = "cd \"$(printf 'r\\351s')\" && exec '" FOLIVEX_BIN_DIR
                         "/folivex' --json \"$0\" -fin.pdf '-f*' -f\"$(printf 'r\\351s.pdf')\" -c";
  const QByteArray folder = QFile::encodeName(place.work()) + "/r\xe9s";
  ASSERT_EQ(mkdir(folder.constData(), 0700), 0);
  ASSERT_EQ(
      rename(QFile::encodeName(place.at("in.pdf")).constData(), (folder + "/in.pdf").constData()),
      0);
  ASSERT_EQ(symlink("in.pdf", (folder + "/r\xe9s.pdf").constData()), 0);
  // What is left of that name as text is another file, which nobody asked for.
  ASSERT_EQ(symlink("in.pdf", (folder + "/r\xef\xbf\xbds.pdf").constData()), 0);
  const ProgramRun run = place.run({"-c", script, fxs()}, "/bin/sh");
  const Records records = recordsOf(run.out);
  EXPECT_EQ(run.exitCode, shown(-1)) << run.err.toStdString();
  const auto bytesOf = [](const QJsonObject& record, const char* key) {
    return QByteArray::fromBase64(record[QLatin1String(key)].toString().toLatin1());
  };
  EXPECT_EQ(of("result", records).at(0)["error"], "none");
  const Records outputs = of("output", records);
  ASSERT_GE(outputs.size(), 2U);
  const QByteArray output = bytesOf(outputs[0], "pathBytes");
  EXPECT_EQ(output, folder + "/out/A.pdf");
  EXPECT_EQ(access(output.constData(), R_OK), 0);
  EXPECT_EQ(bytesOf(of("result", records).back(), "pathBytes"), folder + "/r\xe9s.pdf");
  EXPECT_EQ(of("result", records).back()["error"], "sourceMissing");
  EXPECT_TRUE(std::ranges::any_of(of("finding", records), [&](const QJsonObject& finding) {
    return finding["kind"] == "search" &&
           bytesOf(finding, "textBytes").contains("r\xe9s.pdf: the file is not taken");
  }));
  ASSERT_EQ(system(("rm -r '" + folder + "'").constData()), 0); // by its bytes: no text names it
}

/// Pages that are lost, and outputs that are not there: nothing is told of a file that cannot be
/// found.
TEST_F(ProgramRecords, LossesAreToldByTheirPages) {
  setup.alwaysOverwrite = true;
  QDir(place.work()).mkpath("out/B.pdf");
  source("in.pdf", {"A", "B", "C", "A"});
  const Records records = run({fxs(), "-fin.pdf", "-c"});
  EXPECT_EQ(shownPages(of("result", records).at(0)), "failed 2-2, inFiles 3-4, replaced 1-1");
  EXPECT_EQ(shownOutputs(of("output", records)),
            (QStringList{"3-3 C.pdf new C", "4-4 A.pdf new A"}));
  EXPECT_EQ(records.back()["error"], "outputFailed");

  setup.createList = true;
  const Records listed = run({fxs(), "-fin.pdf", "-c"});
  EXPECT_TRUE(of("output", listed).empty());
  const QJsonObject result = of("result", listed).at(0);
  EXPECT_FALSE(result.contains("pages"));
  EXPECT_TRUE(QFile::exists(result["reports"]["fileList"]["path"].toString()));
}

/// The settings of a proposal are a setup that has the plan which was told.
TEST_F(ProgramRecords, ProposalsTellTheSettingsThatTheyMean) {
  const QString pdf = QStringLiteral("-f" FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
  const QString target = place.at("made.fxs");
  const Records records = run({"--suggest=" + target, pdf, "-c"});
  const Records proposals = of("proposal", records);
  ASSERT_EQ(proposals.size(), 1U);
  const QJsonObject& best = proposals[0];
  EXPECT_TRUE(best["sure"].toBool());
  EXPECT_EQ(best["path"], target);
  EXPECT_EQ(of("result", records).at(0)["error"], "none");
  setup = SplitSetup();
  applySettings(setup, best["settings"].toObject());
  setup.outputDir = place.at("out");
  const Records own = run({fxs(), pdf, "--plan"});
  SetupStore written;
  ASSERT_TRUE(written.LoadSetup(target).ok());
  setup = written.working();
  setup.outputDir = place.at("out");
  const Records theirs = run({fxs(), pdf, "--plan"});
  EXPECT_EQ(shownOutputs(of("planned", own)), shownOutputs(of("planned", theirs)));
  EXPECT_EQ(int(of("planned", own).size()), best["documents"].toInt());
  const QJsonObject planned = of("result", own).at(0);
  EXPECT_EQ(best["pagesLeft"].toInt(), planned["pages"]["leftOver"]["count"].toInt());

  source("one.pdf", {"A", "A", "A"});
  const Records none = run({"--suggest=" + place.at("none.fxs"), "-fone.pdf"});
  EXPECT_TRUE(of("proposal", none).empty());
  EXPECT_EQ(of("finding", none).at(0)["kind"], "unsure");
  EXPECT_EQ(of("result", none).at(0)["error"], "unsure");
  const Records refused = run({"--suggest=" + target, pdf});
  EXPECT_EQ(of("finding", refused).at(0)["kind"], "setupFile");
}

/// One mail arrives, one is refused, one output has no address; the same command then goes on with
/// what is left.
TEST_F(ProgramRecords, MailsAreToldOneByOne) {
  MailServerProcess server({"code-at-recipient", "550", "carl"});
  setup.emailEnable = true;
  setup.emailConfirm = false;
  setup.emailTest = false;
  setup.emailFrom = "office@example.com";
  setup.emailSmtp = server.text();
  setup.emailPassword.clear();
  TextPdf pdf;
  pdf.page(QStringList{"Account: 1", "anna@example.org"});
  pdf.page({"Account: 2"});
  pdf.page(QStringList{"Account: 3", "carl@example.org"});
  pdf.write(place.at("in.pdf"));
  const QStringList arguments{fxs(), "-fin.pdf", "-c"};
  const auto mailsOf = [](const Records& records) {
    QStringList mails;
    for (const QJsonObject& mail : of("mail", records)) {
      mails += QFileInfo(mail["path"].toString()).fileName() + u' ' + mail["address"].toString() +
               u' ' + mail["state"].toString();
    }
    return mails;
  };
  const Records first = run(arguments);
  EXPECT_EQ(mailsOf(first),
            (QStringList({"1.pdf anna@example.org sent", "3.pdf carl@example.org failed"})));
  EXPECT_TRUE(of("mail", first).at(1)["text"].toString().contains("550"));
  EXPECT_EQ(server.taken(), QStringList("anna@example.org"));
  EXPECT_EQ(of("output", first).at(2)["address"], "carl@example.org");
  EXPECT_FALSE(of("output", first).at(1).contains("address"));
  const QJsonObject result = of("result", first).at(0);
  EXPECT_EQ(result["error"], "mailFailed");
  EXPECT_EQ(result["mails"]["sent"].toInt() * 10 + result["mails"]["failed"].toInt(), 11);
  const QString list = result["mails"]["list"]["path"].toString();
  EXPECT_EQ(contentOf(list).count("@example.org|"), 1);
  EXPECT_EQ(of("mailList", first).at(0)["path"], list);
  EXPECT_EQ(of("mailList", first).at(0)["mails"].toInt(), 1);

  server.become({"none"});
  const Records again = run(arguments);
  EXPECT_EQ(mailsOf(again), QStringList("3.pdf carl@example.org sent"));
  EXPECT_EQ(server.taken(), QStringList("carl@example.org"));
  const QJsonObject rest = of("result", again).at(0);
  EXPECT_FALSE(rest.contains("pages")) << "it was not split again";
  EXPECT_TRUE(of("output", again).empty());
  EXPECT_TRUE(isOfFile(rest, place.at("in.pdf")));
}

/// The second source's command kills the program that waits for it.
TEST_F(ProgramRecords, AKilledRunLeavesWholeLinesAndNoEnd) {
  source("a.pdf", {"A1", "A2"});
  source("b.pdf", {"B1", "B2"});
  setup.configUseExternal = true;
  setup.configExternalCommand = place.at("command");
  setup.configExternalParams = "[IN] [OUT]";
  writeFile(place.at("command"),
            "#!/bin/sh\ncase $1 in *b.pdf) kill -9 $PPID;; *) cp \"$1\" \"$2\";; esac\n");
  QFile::setPermissions(place.at("command"), QFile::ReadOwner | QFile::ExeOwner);
  const ProgramRun killed = place.run({"--json", fxs(), "-fa.pdf", "-fb.pdf", "-c"});
  EXPECT_FALSE(killed.ended);
  const Records records = recordsOf(killed.out);
  EXPECT_EQ(of("output", records).size(), 2U);
  EXPECT_EQ(of("result", records).size(), 1U);
  EXPECT_EQ(records.back()["type"], "source");
  EXPECT_EQ(records.back()["source"].toInt(), 2);
}

TEST_F(ProgramRecords, LinesThatCannotBeWrittenAreAFailure) {
  source("a.pdf", {"A"});
  const QString command =
      QStringLiteral("exec '" FOLIVEX_BIN_DIR "/folivex' --json '%1' -fa.pdf %2");
  const ProgramRun run = place.run({"-c", command.arg(fxs(), "-c > /dev/full")}, "/bin/sh");
  EXPECT_EQ(run.exitCode, shown(-13));
  EXPECT_TRUE(run.err.contains("could not be written whole")) << run.err.toStdString();
  EXPECT_EQ(outputs(), QStringList("A.pdf"));
  const ProgramRun bad = place.run({"-c", command.arg("-unowhere.fxs", "> /dev/full")}, "/bin/sh");
  EXPECT_EQ(bad.exitCode, shown(-2)) << "the reason that counts more";
}

TEST(RunFinding, EveryWordIsInItsPlaceAndInTheSchema) {
  const QByteArray schema = contentOf(FOLIVEX_SOURCE_DIR "/docs/json.schema.json");
  for (std::size_t i = 0; i < findingWords.size(); ++i) {
    EXPECT_EQ(static_cast<std::size_t>(findingWords[i].kind), i);
    EXPECT_TRUE(schema.contains('"' + QByteArray(findingWords[i].word.data()) + '"'))
        << findingWords[i].word.data();
    EXPECT_EQ(findingWord(runFindingOf(findingWords[i].exitCode)),
              findingWords[i].exitCode == 0 ? QLatin1String("none") : findingWords[i].word);
  }
}
