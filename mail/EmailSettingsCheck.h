// EmailSettingsCheck: what is wrong with the e-mail settings, before anything is sent.
#pragma once

#include <QString>

#include <vector>

namespace folivex {

struct SplitSetup;

enum class FindingWeight {
  Problem, ///< no mail would go out
  Hint     ///< mails go out, but the person should know
};

struct EmailSettingsFinding {
  QString field; ///< key of the setup ("EMAILSMTP")
  QString text;  ///< in plain words, one sentence
  FindingWeight weight = FindingWeight::Problem;
};

/// Milliseconds; one that is longer is cut.
inline constexpr int longestPause = 3'600'000;

/// In the order of the settings dialog; empty when all is well. Names no password.
std::vector<EmailSettingsFinding> checkEmailSettings(const SplitSetup& setup);

/// The From address as it is checked and used: a blank that was pasted along is none of it.
QString senderOf(const SplitSetup& setup);

/// Why a typed pause is none (milliseconds, 0 to one hour); empty when it is one.
QString pauseProblem(const QString& text);

/// Whether sending can begin.
bool hasProblem(const std::vector<EmailSettingsFinding>& findings);

} // namespace folivex
