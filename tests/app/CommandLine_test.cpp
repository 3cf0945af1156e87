// What the arguments of one start ask for, as a shell or another program hands them over.
#include "app/CommandLine.h"
#include "tests/support/Rows.h"

#include <gtest/gtest.h>

using namespace folivex;

namespace {

/// The actions as text, one letter an action: "p<pass>u<setup>f<file>".
QString shown(const CommandLine& line) {
  QString text;
  for (const CommandAction& action : line.actions) {
    const char letters[] = {'p', 'u', 'f', '*', 's', 'c'};
    text += QString(QLatin1Char(letters[static_cast<int>(action.kind)])) + QLatin1Char('<') +
            action.value + QLatin1Char('>');
  }
  return text;
}

CommandLine parse(const QStringList& arguments) {
  return parseCommandLine(QStringList("/opt/my tools/folivex") + arguments);
}

} // namespace

TEST(CommandLine, Actions) {
  test::forEachRow("app/command-lines.json", [](const SplitSetup&, const QStringList& row) {
    const QStringList arguments = row[0].split(u'|');
    const CommandLine line = parse(arguments);
    EXPECT_EQ(shown(line), row[1]);
    EXPECT_EQ(line.error, "");
    EXPECT_EQ(line.argumentCount, arguments.size());
  });
  EXPECT_EQ(parse({}).argumentCount, 0) << "the program's own blank is no argument";
}

TEST(CommandLine, WordsAndWhatMeansNothing) {
  const CommandLine line = parse({"--help", "--version", "--plan=csv", "--json"});
  EXPECT_TRUE(line.help && line.version && line.json);
  EXPECT_EQ(line.plan, PlanOutput::Csv);
  EXPECT_EQ(parse({"--plan"}).plan, PlanOutput::Table);

  const CommandLine odd =
      parse({"--plan=xml", "--helpme", "-", "-x", "-fa.pdf", "b c.pdf", "-f", ""});
  EXPECT_FALSE(odd.help);
  EXPECT_EQ(odd.plan, PlanOutput::None);
  EXPECT_EQ(shown(odd).toStdString(), "f<a.pdf>");
  const CommandLine opened = parse({"--open", "/my \"5 disk\" .pdf ", "-fb.pdf", "-c"});
  EXPECT_EQ(opened.opened.value(0), "/my \"5 disk\" .pdf ") << "a desktop quotes nothing";
  EXPECT_TRUE(opened.actions.empty() && opened.argumentCount == 0) << "nothing is split";
  EXPECT_EQ(odd.ignored, QStringList({"--plan=xml", "--helpme", "-", "-x", "b c.pdf", "-f"}));
}

TEST(CommandLine, NothingIsCutToFit) {
  const QString most(CommandLine::maxArgument - 2, QLatin1Char('x'));
  EXPECT_EQ(parse({"-f" + most, "-c"}).actions.front().value, most);
  const struct {
    const char* fault;
    QStringList arguments;
    int code;
  } rows[] = {
      {"source cut", {"-us.fxs", "-fx" + most}, -1},
      {"setup cut", {"-ux" + most, "-fa.pdf"}, -2},
      {"setup apart cut", {"-u", "xyz" + most, "-fa.pdf"}, -2},
      {"table overrun", QStringList(CommandLine::maxArguments, QStringLiteral("-fa.pdf")), -1},
  };
  for (const auto& row : rows) {
    const CommandLine line = parse(row.arguments);
    EXPECT_EQ(line.errorCode, row.code) << row.fault;
    EXPECT_FALSE(line.error.isEmpty()) << row.fault;
    EXPECT_TRUE(line.actions.empty()) << row.fault;
  }
  EXPECT_FALSE(parse({"-pS3cret" + most}).error.contains("S3cret"));
}

TEST(CommandLine, SplittingKeepsQuotesAndBlanks) {
  EXPECT_EQ(splitCommandLine(u"\"c:\\my dir\\x.exe\" -f\"a b\"  -c"),
            QStringList({"\"c:\\my dir\\x.exe\" ", "-f\"a b\" ", " ", "-c"}));
}

/// Where the system hands the line over whole, whoever made it.
TEST(CommandLine, ALineIsTakenApartByItsQuotesAlone) {
  const struct {
    QString line;
    QString shown;
  } rows[] = {
      {R"("C:\my tools\folivex.exe" -u"C:\my setups\s.fxs" -f"C:\in\my file.pdf" -c)",
       R"(u<C:\my setups\s.fxs>f<C:\in\my file.pdf>c<>)"},
      {R"(folivex "-uC:\my setups\s.fxs" "-fC:\in\my file.pdf" "-pmy word" "-c")",
       R"(u<C:\my setups\s.fxs>f<C:\in\my file.pdf>p<my word >c<>)"},
      {R"(folivex  -f  a.pdf   -c )", "f<a.pdf>c<>"},
      {R"(folivex -f\\server\in\*.pdf)", R"(*<\\server\in\*.pdf>)"},
      {R"(folivex )", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(shown(parseCommandLine(QStringView(row.line))), row.shown) << qPrintable(row.line);
  }
  EXPECT_EQ(parseCommandLine(QStringView(uR"(folivex --open "C:\my file.pdf" )")).opened,
            QStringList(R"(C:\my file.pdf)"));
  EXPECT_EQ(parseCommandLine(QStringView(uR"("folivex.exe" "--plan" -fa.pdf)")).plan,
            PlanOutput::Table);
  EXPECT_EQ(parseCommandLine(QStringView(u"folivex")).argumentCount, 0);
}
