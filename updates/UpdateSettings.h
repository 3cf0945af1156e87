// UpdateSettings: whether, where and how often to look for a newer version.
#pragma once

#include <QDateTime>
#include <QSettings>
#include <QString>

namespace folivex {

struct UpdateSettings {
  static constexpr int leastDays = 1;
  static constexpr int mostDays = 365;
  static constexpr int usualDays = 30;

  bool isOn = false; ///< nothing leaves the machine unasked
  QString address;
  int intervalDays = usualDays; ///< leastDays to mostDays
  QDateTime lastCheck;          ///< UTC, of the last answer; invalid: never

  bool operator==(const UpdateSettings&) const = default;
};

/// What is remembered under keys of the form "updates/..."; what makes no sense is as if it were
/// not there.
UpdateSettings loadSettings(const QSettings& memory);
void storeSettings(const UpdateSettings& settings, QSettings& memory);

/// What is wrong with an address to ask; empty when it is a good one of https.
QString addressProblemOf(const QString& address);

/// What keeps settings from being agreed to: only a check that is on needs an address, but none may
/// be wrong. Empty when nothing does.
QString problemOf(const UpdateSettings& settings);

/// Whether a check is to be made unasked. A last check that lies in the future (somebody put the
/// clock right since) does not count.
bool isCheckDue(const UpdateSettings& settings, const QDateTime& now);

} // namespace folivex
