// UpdateSettings: whether, where and how often to look for a newer version.
#pragma once

#include <QDateTime>
#include <QString>

namespace folivex {

/// Where settings are remembered from one start to the next. Keys are of the form "updates/...".
class UpdateMemory {
public:
  virtual ~UpdateMemory() = default;
  virtual QString text(const QString& key) const = 0; ///< empty when nothing is remembered
  virtual void setText(const QString& key, const QString& value) = 0;
};

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

/// What is remembered; what makes no sense is as if it were not there.
UpdateSettings loadSettings(const UpdateMemory& memory);
void storeSettings(const UpdateSettings& settings, UpdateMemory& memory);

/// What is wrong with an address to ask; empty when it is a good one of https.
QString addressProblemOf(const QString& address);

/// Whether a check is to be made unasked. A last check that lies in the future (somebody put the
/// clock right since) does not count.
bool isCheckDue(const UpdateSettings& settings, const QDateTime& now);

} // namespace folivex
