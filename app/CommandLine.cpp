#include "app/CommandLine.h"

#include "platform/Paths.h"

#include <algorithm>
#include <array>
#include <map>

namespace folivex {

namespace {

constexpr QLatin1Char quote('"');
constexpr QLatin1Char blank(' ');
/// Stands for a quote that is part of a name, while the line is one text. Unicode promises that it
/// is no character.
constexpr QChar literalQuote(0xFDD0);

struct Quoting {
  bool balanced = true;
  bool hasOpenBlank = false; ///< a blank outside quotes
};

Quoting quotingOf(QStringView text) {
  Quoting quoting;
  for (const QChar c : text) {
    if (c == quote) {
      quoting.balanced = !quoting.balanced;
    } else if (c == blank && quoting.balanced) {
      quoting.hasOpenBlank = true;
    }
  }
  return quoting;
}

bool isOption(QStringView argument) {
  return argument.size() >= 2 && argument[0] == QLatin1Char('-');
}

/// An argument as it must stand on the line so that splitting gives it back whole. Quotes that do
/// their work already are left alone; any other is part of the name.
QString lineForm(const QString& argument) {
  const Quoting quoting = quotingOf(argument);
  if (argument.isEmpty()) {
    return QStringLiteral("\"\"");
  }
  if (quoting.balanced && !quoting.hasOpenBlank) {
    return argument;
  }
  QString text = argument;
  text.replace(quote, literalQuote);
  if (!text.contains(blank)) {
    return text;
  }
  // The option letter stays outside, else the argument would begin with the quote.
  const qsizetype start = isOption(text) && text[1] != blank ? 2 : 0;
  return text.left(start) + quote + text.mid(start) + quote;
}

QString withoutQuotes(QString text) {
  text.remove(quote);
  return text.replace(literalQuote, quote);
}

/// A blank at the end of a path is no part of it.
QString pathValue(const QString& text) {
  return platform::withoutTrailingBlanks(withoutQuotes(text));
}

/// A password keeps the blank that ends its argument, and quotes but for a pair around all of it.
QString passwordValue(const QString& text) {
  const QString word = platform::withoutTrailingBlanks(text);
  QString value = text;
  if (word.size() >= 2 && word.startsWith(quote) && word.endsWith(quote)) {
    value = word.sliced(1, word.size() - 2) + text.sliced(word.size());
  }
  return value.replace(literalQuote, quote);
}

using Kind = CommandAction::Kind;

void addPassword(CommandLine& line, const QString& text) {
  line.actions.push_back({Kind::SetPassword, passwordValue(text)});
}

void addSetup(CommandLine& line, const QString& text) {
  line.actions.push_back({Kind::SetSetupPath, pathValue(text)});
}

void addSource(CommandLine& line, const QString& text) {
  const QString path = pathValue(text);
  if (path.isEmpty()) {
    line.ignored += QStringLiteral("-f");
    return;
  }
  const bool folder = path.contains(QLatin1Char('*'));
  line.actions.push_back({folder ? Kind::ProcessFolder : Kind::ProcessFile, path});
}

struct WordOption {
  QLatin1StringView word;
  void (*set)(CommandLine&);
};
constexpr std::array<WordOption, 8> wordOptions = {{
    {QLatin1StringView("--help"), [](CommandLine& line) { line.help = true; }},
    {QLatin1StringView("--version"), [](CommandLine& line) { line.version = true; }},
    {QLatin1StringView("--plan"), [](CommandLine& line) { line.plan = PlanOutput::Table; }},
    {QLatin1StringView("--plan=csv"), [](CommandLine& line) { line.plan = PlanOutput::Csv; }},
    {QLatin1StringView("--suggest"), [](CommandLine& line) { line.suggest = true; }},
    {QLatin1StringView("--unsure"), [](CommandLine& line) { line.unsure = true; }},
    {QLatin1StringView("--json"), [](CommandLine& line) { line.json = true; }},
    {QLatin1StringView("--force"), [](CommandLine& line) { line.force = true; }},
}};

/// Walks the arguments of one line behind the program's own path.
class Walk {
public:
  Walk(CommandLine& line, const QStringList& arguments) : m_line(line), m_arguments(arguments) {}

  void run() {
    for (m_index = 1; m_index < m_arguments.size(); ++m_index) {
      take(m_arguments[m_index]);
    }
    if (m_close) {
      m_line.actions.push_back({Kind::Close, {}});
    }
  }

private:
  void take(const QString& argument) {
    const QString word = platform::withoutTrailingBlanks(argument);
    static const std::map<QChar, void (*)(CommandLine&, const QString&)> options = {
        {u'f', addSource}, {u'p', addPassword}, {u'u', addSetup}};
    const auto option = options.find(isOption(argument) ? argument[1] : QChar());
    if (option != options.end()) {
      // Written apart from its letter, the value is the next argument whatever that begins with.
      const bool apart = word.size() == 2 && m_index + 1 < m_arguments.size();
      option->second(m_line, apart ? m_arguments[++m_index] : argument.mid(2));
    } else if (word.startsWith(QLatin1String("-c"))) {
      m_close = true;
    } else if (word == QLatin1String("--pages")) {
      m_line.pages = PagePart::of(pathValue(m_arguments.value(++m_index)));
    } else if (word == QLatin1String("--planned")) {
      m_line.planFile = pathValue(m_arguments.value(++m_index));
    } else if (word == QLatin1String("--send")) {
      m_line.actions.push_back({Kind::SendList, pathValue(m_arguments.value(++m_index))});
    } else if (!takeWord(word) && !word.isEmpty()) {
      m_line.ignored += withoutQuotes(word);
    }
  }

  bool takeWord(const QString& word) {
    const QLatin1StringView toFile("--suggest=");
    if (const QString path = pathValue(word);
        path.startsWith(toFile) && path.size() > toFile.size()) {
      m_line.suggest = true;
      m_line.suggestedSetup = path.sliced(toFile.size());
      return true;
    }
    for (const WordOption& option : wordOptions) {
      if (option.word == word) {
        option.set(m_line);
        return true;
      }
    }
    return false;
  }

  CommandLine& m_line;
  const QStringList& m_arguments;
  qsizetype m_index = 0;
  bool m_close = false;
};

/// What is too much for the argument table, empty when all fits. The program's own path does not
/// count: it names nothing that is opened.
QString capacityError(const QStringList& arguments, int& code) {
  code = -1;
  if (arguments.size() > CommandLine::maxArguments) {
    return QStringLiteral("There are more than %1 arguments.").arg(CommandLine::maxArguments);
  }
  for (qsizetype i = 1; i < arguments.size(); ++i) {
    const QString text = withoutQuotes(platform::withoutTrailingBlanks(arguments[i]));
    if (text.size() > CommandLine::maxArgument) {
      const QString option = QStringView(arguments[i - 1]).trimmed().toString();
      const bool isSetup = text.startsWith(QLatin1String("-u")) || option == QLatin1String("-u");
      const bool isPassword = text.startsWith(QLatin1String("-p")) || option == QLatin1String("-p");
      code = isSetup ? -2 : -1;
      return QStringLiteral("Argument %1 is longer than %2 characters%3")
          .arg(QString::number(i), QString::number(CommandLine::maxArgument),
               isPassword ? QStringLiteral(".") : QStringLiteral(": ") + text);
    }
  }
  return {};
}

} // namespace

QString rebuildCommandLine(const QStringList& arguments) {
  QStringList parts;
  parts.reserve(arguments.size());
  std::transform(arguments.begin(), arguments.end(), std::back_inserter(parts), lineForm);
  return parts.join(blank);
}

QStringList splitCommandLine(QStringView line) {
  QStringList arguments;
  QString argument;
  bool quoting = false;
  for (const QChar c : line) {
    argument += c;
    if (c == quote) {
      quoting = !quoting;
    } else if (c == blank && !quoting) {
      arguments += argument;
      argument.clear();
    }
  }
  arguments += argument;
  return arguments;
}

namespace {

CommandLine parseTable(const QStringList& table) {
  CommandLine line;
  line.argumentCount = static_cast<int>(table.size()) - 1;
  line.error = capacityError(table, line.errorCode);
  if (line.error.isEmpty()) {
    line.errorCode = 0;
    Walk(line, table).run();
  }
  return line;
}

constexpr QLatin1StringView openWord("--open");

/// Whoever makes a line out of arguments puts quotes around all of one.
QString withOptionInFront(QString argument) {
  if (argument.startsWith(QLatin1String("\"--"))) {
    return argument.remove(quote);
  }
  return argument.startsWith(QLatin1String("\"-")) && argument.size() > 2
             ? argument.sliced(1, 2) + quote + argument.sliced(3)
             : argument;
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments) {
  CommandLine line;
  if (arguments.value(1) == openWord) {
    line.opened = arguments.sliced(2);
    return line;
  }
  return arguments.size() < 2 ? line : parseTable(splitCommandLine(rebuildCommandLine(arguments)));
}

CommandLine parseCommandLine(QStringView whole) {
  CommandLine line;
  QStringList table = splitCommandLine(whole);
  const QString program = table.takeFirst();
  // Blanks in a row, and one at the end, make arguments of nothing.
  table.removeIf(
      [](const QString& argument) { return platform::withoutTrailingBlanks(argument).isEmpty(); });
  std::ranges::transform(table, table.begin(), withOptionInFront);
  if (platform::withoutTrailingBlanks(table.value(0)) == openWord) {
    table.removeFirst();
    std::ranges::transform(table, std::back_inserter(line.opened), pathValue);
    return line;
  }
  return table.isEmpty() ? line : parseTable(QStringList(program) + table);
}

QString usageText() {
  return QStringLiteral(
      "Folivex splits a PDF into one PDF for each document in it, by the words on its pages.\n"
      "\n"
      "Usage: folivex [-uSETUP] [-pPASSWORD] -fPDF... [-c]\n"
      "  or:  folivex [--open FILE]\n"
      "\n"
      "Without options the window opens. Options are taken in order; \"-u\" and \"-p\" count for\n"
      "the \"-f\" behind them.\n"
      "\nOptions:\n"
      "  -uSETUP      setup file (.fxs); without it the settings of the last run\n"
      "  -pPASSWORD   password that opens the PDF\n"
      "  -fPDF        split this PDF; with \"*\" in it, every PDF of the folder that it matches\n"
      "  -c           close the program when all is done\n"
      "  --plan       show what would be written, as a table, and write nothing; --plan=csv as "
      "CSV\n"
      "  --pages RANGE  write only the outputs that begin on these pages, like 1-5000; with\n"
      "               --planned FILE as the plan says that --json --plan wrote\n"
      "  --send LIST  send what is left of a saved list of mails, as the setup before it says\n"
      "  --suggest    propose setups for this PDF; --suggest=SETUP writes the best, if it is "
      "sure,\n"
      "               to a setup file; --unsure: in any case; --force: over a file that is there\n"
      "  --json       tell programs what was done, planned or proposed, a line each on stdout\n"
      "  --open FILE  show a PDF or a setup in the window, and split nothing; comes first and "
      "alone\n"
      "  --help       this text\n"
      "  --version    the program's version\n"
      "\n"
      "Without a display, with --plan, --suggest or --json, and with \"-c\" on a terminal no\n"
      "window opens: messages go to standard error, and nothing waits for a person.\n"
      "\n"
      "Exit codes (a shell shows the low 8 bits, -1 as 255):\n"
      "  0    all went well\n"
      "  1    stopped\n"
      "  2    no setup is sure\n"
      "  -1   source missing\n"
      "  -2   setup file missing\n"
      "  -3   text report not writable\n"
      "  -4   CSV report not writable\n"
      "  -5   default setup file not writable\n"
      "  -6   settings that exclude each other\n"
      "  -11  an append failed\n"
      "  -12  source unreadable or protected\n"
      "  -13  an output could not be written\n"
      "  -14  a mail could not be sent\n"
      "  -15  the source changed meanwhile\n"
      "  -16  the output folder is another run's\n");
}

QString versionText() {
  return QStringLiteral("Folivex %1\n").arg(QStringLiteral(FOLIVEX_VERSION));
}

} // namespace folivex
