#include "engine/job/SavedPlan.h"

#include "engine/setup/SplitSetup.h"
#include "platform/Paths.h"
#include "platform/RawText.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace folivex {

namespace {

using Fate = PlannedOutput::Fate;

/// Longer than any record of an output, and no more than a hostile file may cost.
constexpr qint64 longestLine = 1 << 20;

QString textOf(const QJsonObject& record, const char* key) {
  return record[QLatin1StringView(key)].toString();
}

int numberOf(const QJsonObject& record, const char* key) {
  return record[QLatin1StringView(key)].toInt(-1);
}

std::optional<Fate> fateOf(const QString& word) {
  constexpr Fate fates[] = {Fate::New, Fate::Replaces, Fate::Appends, Fate::Renamed, Fate::GivenUp};
  const auto* fate =
      std::ranges::find_if(fates, [&word](Fate each) { return fateWord(each) == word; });
  return fate == std::end(fates) ? std::nullopt : std::optional(*fate);
}

/// Takes the records of one source among those of a command.
class Reader {
public:
  Reader(SavedPlan& plan, const SplitSetup& setup)
      : m_plan(plan), m_setup(setup), m_source(platform::absoluteRawPath(setup.fileName)),
        m_folder(platform::absoluteRawPath(setup.outputDir) + u'/') {}

  /// Empty, or what is wrong with it.
  QString take(const QJsonObject& record);
  bool isWhole() const { return m_plan.pageCount > 0; }

private:
  QString takeBegin(const QJsonObject& record);
  QString takeOutput(const QJsonObject& record);
  QString takeResult(const QJsonObject& record);

  SavedPlan& m_plan;
  const SplitSetup& m_setup;
  QString m_source;
  QString m_folder;
  bool m_isBegun = false;
  int m_number = 0; ///< of the source in that command; 0 before it
};

QString Reader::take(const QJsonObject& record) {
  const QString type = textOf(record, "type");
  if (!m_isBegun) {
    return takeBegin(record);
  }
  const int number = numberOf(record, "source");
  if (type == u"source" && textOf(record, "path") == m_source) {
    m_number = number;
  } else if (number != m_number || isWhole()) {
    return {}; // another source's
  } else if (type == u"planned") {
    return takeOutput(record);
  } else if (type == u"result") {
    return takeResult(record);
  }
  return {};
}

QString Reader::takeBegin(const QJsonObject& record) {
  m_isBegun = true;
  const bool isPlan = textOf(record, "format") == u"folivex-records" &&
                      numberOf(record, "version") == 1 && textOf(record, "work") == u"plan";
  return isPlan ? QString() : QStringLiteral("is no plan that --json --plan wrote");
}

QString Reader::takeOutput(const QJsonObject& record) {
  const std::optional<Fate> fate = fateOf(textOf(record, "fate"));
  PlannedOutput output{numberOf(record, "firstPage"), numberOf(record, "lastPage"),
                       textOf(record, "matchedText"), textOf(record, "path"),
                       fate.value_or(Fate::New),      textOf(record, "address")};
  if (!fate || output.firstPage < 1 || output.lastPage < output.firstPage ||
      record.contains(QLatin1StringView("pathBytes")) || !output.path.endsWith(u".pdf")) {
    return QStringLiteral("has an output that is none: %1").arg(output.path);
  }
  if (!output.path.startsWith(m_folder) || platform::absoluteRawPath(output.path) != output.path) {
    return QStringLiteral("has an output that does not lie in the output folder, %1: %2")
        .arg(m_setup.outputDir, output.path);
  }
  if (fate == Fate::Appends ||
      ((fate == Fate::GivenUp || fate == Fate::Replaces) && !m_setup.alwaysOverwrite)) {
    return QStringLiteral("was made with other settings");
  }
  m_plan.outputs.push_back(std::move(output));
  return {};
}

QString Reader::takeResult(const QJsonObject& record) {
  constexpr qint64 nanoseconds = 1'000'000'000;
  const auto whole = [&record](const char* key) {
    return record[QLatin1StringView(key)].toInteger(-1);
  };
  if (numberOf(record, "exitCode") != 0) {
    return QStringLiteral("says that the source could not be planned");
  }
  const int pages = numberOf(record[QLatin1StringView("pages")].toObject(), "total");
  const bool fits = std::ranges::all_of(
      m_plan.outputs, [pages](const PlannedOutput& output) { return output.lastPage <= pages; });
  if (pages < 1 || !fits) {
    return QStringLiteral("has outputs of pages that are not there");
  }
  m_plan.pageCount = pages;
  m_plan.source.size = static_cast<uint64_t>(whole("size"));
  m_plan.source.written = whole("modified") * nanoseconds + whole("modifiedNanoseconds");
  return {};
}

QString read(QFile& file, Reader& reader) {
  while (!file.atEnd()) {
    const QByteArray line = file.readLine(longestLine);
    if (!line.endsWith('\n')) {
      return QStringLiteral("was cut off");
    }
    const QJsonDocument record = QJsonDocument::fromJson(line);
    if (!record.isObject()) {
      return QStringLiteral("is no plan that --json --plan wrote");
    }
    if (QString problem = reader.take(record.object()); !problem.isEmpty()) {
      return problem;
    }
  }
  return reader.isWhole() ? QString() : QStringLiteral("has no whole plan of this source");
}

} // namespace

SavedPlan SavedPlan::load(const QString& path, const SplitSetup& setup) {
  SavedPlan plan;
  QFile file(path);
  Reader reader(plan, setup);
  const QString problem = file.open(QIODevice::ReadOnly) ? read(file, reader) : file.errorString();
  if (!problem.isEmpty()) {
    plan.problem = QStringLiteral("%1: %2").arg(path, problem);
  }
  return plan;
}

} // namespace folivex
