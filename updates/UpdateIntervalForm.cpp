#include "updates/UpdateIntervalForm.h"

namespace folivex {

UpdateIntervalForm UpdateIntervalForm::of(const UpdateSettings& settings) {
  return {settings.isOn, settings.intervalDays, settings.address};
}

QString UpdateIntervalForm::problem() const {
  const QString asked = address.trimmed();
  return asked.isEmpty() && !isOn ? QString() : addressProblemOf(asked);
}

bool UpdateIntervalForm::canCheck() const {
  return addressProblemOf(address.trimmed()).isEmpty();
}

UpdateSettings UpdateIntervalForm::settings() const {
  UpdateSettings settings;
  settings.isOn = isOn;
  settings.intervalDays = intervalDays;
  settings.address = address.trimmed();
  return settings;
}

QString lastCheckText(const QDateTime& lastCheck, const QLocale& locale) {
  return lastCheck.isValid()
             ? QStringLiteral("Last check: %1")
                   .arg(locale.toString(lastCheck.toLocalTime(), QLocale::ShortFormat))
             : QStringLiteral("Last check: never");
}

} // namespace folivex
