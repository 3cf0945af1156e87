#include "sheetflat/Converter.h"

#include "sheetflat/Csv.h"

namespace sheetflat {

namespace {

constexpr qint64 memoryLimit = 2LL * 1024 * 1024 * 1024;

// The converter reads and keeps settings of the person's own where it is let.
QProcessEnvironment environmentIn(const QString& workFolder) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* variable :
       {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
    environment.insert(QString::fromLatin1(variable), workFolder);
  }
  environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
  environment.remove(QStringLiteral("DISPLAY"));
  environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
  return environment;
}

} // namespace

folivex::platform::ChildRun runConverter(const QStringList& arguments, const QString& workFolder,
                                         const QDeadlineTimer& deadline) {
  folivex::platform::ChildProgram converter;
  converter.name = QStringLiteral("ssconvert");
  converter.arguments = arguments;
  converter.workingFolder = workFolder;
  converter.environment = environmentIn(workFolder);
  converter.deadline = deadline;
  converter.mostMemory = memoryLimit;
  converter.longestFile = csvSizeLimit;
  return runChild(converter);
}

} // namespace sheetflat
