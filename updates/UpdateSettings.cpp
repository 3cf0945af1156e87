#include "updates/UpdateSettings.h"

#include <QUrl>

#include <algorithm>

namespace folivex {

namespace {

const QString& onKey() {
  static const QString key = QStringLiteral("updates/on");
  return key;
}
const QString& addressKey() {
  static const QString key = QStringLiteral("updates/address");
  return key;
}
const QString& daysKey() {
  static const QString key = QStringLiteral("updates/days");
  return key;
}
const QString& lastCheckKey() {
  static const QString key = QStringLiteral("updates/lastCheck");
  return key;
}

} // namespace

UpdateSettings loadSettings(const UpdateMemory& memory) {
  UpdateSettings settings;
  settings.isOn = memory.text(onKey()) == QLatin1String("1");
  settings.address = memory.text(addressKey());
  bool isNumber = false;
  const int days = memory.text(daysKey()).toInt(&isNumber);
  if (isNumber) {
    settings.intervalDays = std::clamp(days, UpdateSettings::leastDays, UpdateSettings::mostDays);
  }
  settings.lastCheck = QDateTime::fromString(memory.text(lastCheckKey()), Qt::ISODate).toUTC();
  return settings;
}

void storeSettings(const UpdateSettings& settings, UpdateMemory& memory) {
  memory.setText(onKey(), settings.isOn ? QStringLiteral("1") : QStringLiteral("0"));
  memory.setText(addressKey(), settings.address);
  memory.setText(daysKey(), QString::number(settings.intervalDays));
  memory.setText(lastCheckKey(), settings.lastCheck.toUTC().toString(Qt::ISODate));
}

QString addressProblemOf(const QString& address) {
  if (address.isEmpty()) {
    return QStringLiteral("An address is needed.");
  }
  const QUrl url(address, QUrl::StrictMode);
  if (url.isValid() && url.scheme() != QLatin1String("https") && !url.scheme().isEmpty()) {
    return QStringLiteral("Only addresses that begin with https:// are asked.");
  }
  if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty()) {
    return QStringLiteral("This is no address of the form https://host/path.");
  }
  return url.userInfo().isEmpty() ? QString()
                                  : QStringLiteral("The address must not hold a name or password.");
}

bool isCheckDue(const UpdateSettings& settings, const QDateTime& now) {
  if (!settings.isOn || !addressProblemOf(settings.address).isEmpty()) {
    return false;
  }
  return !settings.lastCheck.isValid() || settings.lastCheck > now ||
         settings.lastCheck.addDays(settings.intervalDays) <= now;
}

} // namespace folivex
