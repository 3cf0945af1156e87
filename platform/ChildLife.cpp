#include "platform/ChildLife.h"

#if defined(Q_OS_LINUX)
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#elif defined(Q_OS_WIN)
#include <windows.h>
#endif

namespace folivex::platform {

#if defined(Q_OS_WIN)

namespace {

/// Its handle is closed by the system when this process ends, and with it all that is in the job.
HANDLE childrenJob() {
  static const HANDLE job = [] {
    const HANDLE made = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
    return made;
  }();
  return job;
}

} // namespace

void endWithParent(qint64) {}

void tieToThisProcess(qint64 child) {
  const HANDLE process =
      OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, static_cast<DWORD>(child));
  if (process != nullptr) {
    AssignProcessToJobObject(childrenJob(), process);
    CloseHandle(process);
  }
}

#else

void endWithParent(qint64 parent) {
#if defined(Q_OS_LINUX)
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) {
    _exit(1); // it died before it was asked for
  }
#else
  Q_UNUSED(parent);
#endif
}

void tieToThisProcess(qint64) {}

#endif

} // namespace folivex::platform
