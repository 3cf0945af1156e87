#include "engine/setup/SetupReach.h"

namespace folivex {

namespace {

/// What a person can be shown: on one line, its end told to be missing.
QString quoted(const QString& value) {
  constexpr qsizetype most = 200;
  const QString line = value.simplified();
  return line.size() > most ? line.left(most) + QStringLiteral(" [and more]") : line;
}

QString mailReach(const SplitSetup& setup) {
  QString text = setup.emailTest
                     ? QStringLiteral("It mails every output to %1").arg(quoted(setup.emailFrom))
                     : QStringLiteral("It mails each output to the address on its pages");
  text += setup.useOutlook ? QStringLiteral(", through the mail program of this computer")
                           : QStringLiteral(", through the server %1").arg(quoted(setup.emailSmtp));
  if (!setup.emailInvoiceCc.isEmpty()) {
    text += QStringLiteral(", with a copy to %1").arg(quoted(setup.emailInvoiceCc));
  }
  return text + (setup.emailConfirm ? QStringLiteral("; you see the list first.")
                                    : QStringLiteral(", without showing you the list."));
}

} // namespace

QStringList reachOf(const SplitSetup& setup) {
  QStringList reach;
  if (setup.configUseExternal) {
    reach += QStringLiteral("It starts a program for each output: %1 %2")
                 .arg(quoted(setup.configExternalCommand), quoted(setup.configExternalParams));
  }
  if (setup.otherSettingsRemoveFiles) {
    reach += setup.splitToSource
                 ? QStringLiteral("It deletes every file in an output folder before a run.")
                 : QStringLiteral("It deletes every file in this folder before a run: %1")
                       .arg(quoted(outputFolderOf(setup, setup.fileName)));
  }
  if (setup.emailEnable) {
    reach += mailReach(setup);
  }
  return reach;
}

void restrain(SplitSetup& setup) {
  setup.configUseExternal = setup.otherSettingsRemoveFiles = setup.emailEnable = false;
}

} // namespace folivex
