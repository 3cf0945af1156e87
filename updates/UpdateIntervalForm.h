// UpdateIntervalForm: what the dialog of the update check decides.
#pragma once

#include "updates/UpdateSettings.h"

#include <QLocale>

namespace folivex {

/// The dialog's fields as they stand, and what follows from them.
struct UpdateIntervalForm {
  bool isOn = false;
  int intervalDays = UpdateSettings::usualDays;
  QString address; ///< blanks around it do not count

  static UpdateIntervalForm of(const UpdateSettings& settings);

  /// What keeps the fields from being agreed to: only a check that is on needs an address, but none
  /// may be wrong.
  QString problem() const;
  /// Whether a server can be asked just now, on or not.
  bool canCheck() const;
  UpdateSettings settings() const;
};

/// "Last check: never." or its local time as the locale writes it.
QString lastCheckText(const QDateTime& lastCheck, const QLocale& locale);

} // namespace folivex
