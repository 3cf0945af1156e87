// SettingTips: what each setting does, in a sentence or two.
#pragma once

#include <QString>

namespace folivex {

/// The tooltip of the setting with this key; empty for a key that no control has.
QString settingTip(const QString& key);

} // namespace folivex
