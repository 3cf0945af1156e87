// What the arguments of one start ask for, as a shell or another program hands them over.
#include "app/CommandLine.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

using namespace folivex;

namespace {

/// The actions as text, one letter an action: "p<pass>u<setup>f<file>".
QString shown(const CommandLine& line) {
  QString text;
  for (const CommandAction& action : line.actions) {
    const char letters[] = {'p', 'u', 'f', '*', 'c'};
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
  const struct {
    const char* fault;
    const char* arguments; ///< with '|' between them
    const char* actions;
  } rows[] = {
      {"usual order", "-us.fxs|-fa.pdf|-c", "u<s.fxs>f<a.pdf>c<>"},
      {"order lost", "-fa.pdf|-us.fxs|-fb.pdf", "f<a.pdf>u<s.fxs>f<b.pdf>"},
      {"closed before the work", "-c|-fa.pdf", "f<a.pdf>c<>"},
      {"closed twice", "-c|-close", "c<>"},
      {"values apart", "-u|s.fxs|-p|pw|-f|a.pdf", "u<s.fxs>p<pw >f<a.pdf>"},
      {"value apart that looks like an option", "-p|-c|-f|-x.pdf", "p<-c >f<-x.pdf>"},
      {"blanks in a path", "-f/in/my file.pdf|-c", "f</in/my file.pdf>c<>"},
      {"blanks in a path apart", "-f|/in/my file.pdf|-c", "f</in/my file.pdf>c<>"},
      {"a script's quotes", "-f\"/my file.pdf\"|-u\"s.fxs\"", "f</my file.pdf>u<s.fxs>"},
      {"quotes within", "-f/in/\"my file\".pdf", "f</in/my file.pdf>"},
      {"one quote swallows the rest", "-pa\"b|-f5\" disk.pdf|-c", "p<a\"b >f<5\" disk.pdf>c<>"},
      {"password keeps its quotes", "-pa\"b\"c", "p<a\"b\"c>"},
      {"password in quotes", "-p|two words|-p\"three of them\"", "p<two words >p<three of them>"},
      {"blank at a path's end", "-fa.pdf |-us.fxs ", "f<a.pdf>u<s.fxs>"},
      {"folder", "-f/in/*.pdf", "*</in/*.pdf>"},
      {"setup taken back", "-us.fxs|-u|", "u<s.fxs>u<>"},
      {"nothing behind the last letter", "-fa.pdf|-f", "f<a.pdf>"},
      {"empty path processed", "-f||-f\"\"", ""},
      {"words take files with them", "--plan|-fa.pdf", "f<a.pdf>"},
  };
  for (const auto& row : rows) {
    const QStringList arguments = QString(row.arguments).split(u'|');
    const CommandLine line = parse(arguments);
    EXPECT_EQ(shown(line), row.actions) << row.fault;
    EXPECT_EQ(line.error, "") << row.fault;
    EXPECT_EQ(line.argumentCount, arguments.size()) << row.fault;
  }
  EXPECT_EQ(parse({}).argumentCount, 0) << "the program's own blank is no argument";
}

TEST(CommandLine, WordsAndWhatMeansNothing) {
  const CommandLine line = parse({"--help", "--version", "--plan=csv"});
  EXPECT_TRUE(line.help && line.version);
  EXPECT_EQ(line.plan, PlanOutput::Csv);
  EXPECT_EQ(parse({"--plan"}).plan, PlanOutput::Table);

  const CommandLine odd =
      parse({"--plan=xml", "--helpme", "-", "-x", "-fa.pdf", "b c.pdf", "-f", ""});
  EXPECT_FALSE(odd.help);
  EXPECT_EQ(odd.plan, PlanOutput::None);
  EXPECT_EQ(shown(odd).toStdString(), "f<a.pdf>");
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
