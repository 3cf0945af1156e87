#include "app/help/ProblemReport.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSysInfo>
#include <QThread>

#if defined(Q_OS_WIN)
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace folivex {

namespace {

qint64 memoryBytes() {
#if defined(Q_OS_WIN)
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof status;
  return GlobalMemoryStatusEx(&status) ? static_cast<qint64>(status.ullTotalPhys) : 0;
#else
  const long memoryPages = sysconf(_SC_PHYS_PAGES);
  const long size = sysconf(_SC_PAGESIZE);
  return memoryPages > 0 && size > 0 ? qint64{memoryPages} * size : 0;
#endif
}

} // namespace

SystemFacts systemFacts(const QString& programVersion, std::vector<LibraryVersion> libraries) {
  SystemFacts facts;
  facts.programVersion = programVersion;
  facts.libraries = std::move(libraries);
  facts.libraries.insert(facts.libraries.begin(),
                         {QStringLiteral("Qt"), QString::fromLatin1(qVersion())});
  facts.system = QStringLiteral("%1, %2, %3")
                     .arg(QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                          QSysInfo::currentCpuArchitecture());
  facts.processors = QThread::idealThreadCount();
  facts.memoryBytes = memoryBytes();
  if (const QScreen* screen = QGuiApplication::primaryScreen()) {
    facts.screenScale = screen->devicePixelRatio() * screen->logicalDotsPerInch() / 96;
  }
  return facts;
}

} // namespace folivex
