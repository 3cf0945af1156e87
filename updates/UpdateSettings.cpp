#include "updates/UpdateSettings.h"

#include <QUrl>

#include <algorithm>

namespace folivex {

namespace {

constexpr QLatin1String onKey("updates/on");
constexpr QLatin1String addressKey("updates/address");
constexpr QLatin1String daysKey("updates/days");
constexpr QLatin1String lastCheckKey("updates/lastCheck");

} // namespace

UpdateSettings loadSettings(const QSettings& memory) {
  UpdateSettings settings;
  settings.isOn = memory.value(onKey).toString() == QLatin1String("1");
  settings.address = memory.value(addressKey).toString();
  bool isNumber = false;
  const int days = memory.value(daysKey).toInt(&isNumber);
  if (isNumber) {
    settings.intervalDays = std::clamp(days, UpdateSettings::leastDays, UpdateSettings::mostDays);
  }
  settings.lastCheck =
      QDateTime::fromString(memory.value(lastCheckKey).toString(), Qt::ISODate).toUTC();
  return settings;
}

void storeSettings(const UpdateSettings& settings, QSettings& memory) {
  memory.setValue(onKey, settings.isOn ? QStringLiteral("1") : QStringLiteral("0"));
  memory.setValue(addressKey, settings.address);
  memory.setValue(daysKey, QString::number(settings.intervalDays));
  memory.setValue(lastCheckKey, settings.lastCheck.toUTC().toString(Qt::ISODate));
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

QString problemOf(const UpdateSettings& settings) {
  return settings.address.isEmpty() && !settings.isOn ? QString()
                                                      : addressProblemOf(settings.address);
}

bool isCheckDue(const UpdateSettings& settings, const QDateTime& now) {
  if (!settings.isOn || !addressProblemOf(settings.address).isEmpty()) {
    return false;
  }
  return !settings.lastCheck.isValid() || settings.lastCheck > now ||
         settings.lastCheck.addDays(settings.intervalDays) <= now;
}

} // namespace folivex
