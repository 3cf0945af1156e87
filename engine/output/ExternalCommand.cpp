#include "engine/output/ExternalCommand.h"

#include "platform/FileSystem.h"

#include <QProcess>

#include <algorithm>
#include <array>
#include <utility>

namespace folivex {

namespace {

constexpr qsizetype driveLength = 3; // the drive and its separator

using Values = std::array<std::pair<QStringView, QString>, 4>;

/// The template with its placeholders filled in one pass: a path that holds "[END]" stays as it is.
QString filled(QStringView pattern, const Values& values) {
  QString text;
  while (!pattern.isEmpty()) {
    const auto* const value = std::find_if(values.begin(), values.end(), [&](const auto& entry) {
      return pattern.startsWith(entry.first);
    });
    if (value == values.end()) {
      text += pattern.front();
      pattern = pattern.mid(1);
    } else {
      text += value->second;
      pattern = pattern.mid(value->first.size());
    }
  }
  return text;
}

} // namespace

QString offeredExternalCommand() {
  return QStringLiteral("c:\\splitpdf.exe");
}

QString offeredExternalParams() {
  return QStringLiteral("\"[IN]\" -o\"[OUT]\" -s[START]-[END]");
}

bool usesExternalCommand(const SplitSetup& setup) {
  return setup.configUseExternal && !setup.configExternalCommand.isEmpty() && !setup.alwaysAppend;
}

ExternalCommand externalCommand(const SplitSetup& setup, const QString& source,
                                const QString& target, int firstPage, int lastPage) {
  ExternalCommand command;
  command.program = setup.configExternalCommand;
  if (command.program.startsWith(QStringLiteral("c:\\splitpdf"))) {
    command.program.remove(0, driveLength);
  }
  QString parameters = setup.configExternalParams;
  if (command.program.startsWith(QStringLiteral("splitpdf"))) {
    parameters += QStringLiteral(" -fxsa");
  }
  const Values values = {{{u"[IN]", source},
                          {u"[OUT]", target},
                          {u"[START]", QString::number(firstPage)},
                          {u"[END]", QString::number(lastPage)}}};
  command.arguments = QProcess::splitCommand(parameters);
  for (QString& argument : command.arguments) {
    argument = filled(argument, values);
  }
  return command;
}

bool endsLikePdf(const QString& path) {
  constexpr qint64 tail = 1024; // where readers look for it (ISO 32000-1, annex H)
  QFile file;
  platform::FileFailure ignored;
  return platform::openForReading(file, path, platform::FileAccess::Ordinary, ignored) &&
         file.seek(std::max<qint64>(file.size() - tail, 0)) && file.read(tail).contains("%%EOF");
}

} // namespace folivex
