// SetupFields: the table that ties every key of the setup file to its field.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QLatin1StringView>

#include <span>
#include <variant>

namespace folivex {

/// The key AUTOMATION: has no field, sets the program's automation flag.
struct AutomationKey {};
/// The key ADDSPACE: the older form of ADDBWORDS.
struct AddSpaceKey {};

using SetupMember = std::variant<bool SplitSetup::*, int SplitSetup::*, QString SplitSetup::*,
                                 double SplitSetup::*, AutomationKey, AddSpaceKey>;

enum class FieldUse { ReadWrite, ReadOnly, WriteOnly };

/// What becomes of a field at the start of a load.
enum class FieldReset { Keep, Default };

/// What is peculiar about a field.
enum class FieldRule {
  Plain,
  Escaped,      ///< line ends are spelled out, so that the text fits one line
  WorkingOnly,  ///< lives in the working copy alone
  NotUnattended ///< loaded as 0 in automation mode
};

struct SetupField {
  QLatin1StringView key;
  SetupMember member;
  const char* tip = ""; ///< what it does, in a sentence or two; empty where no control shows it
  FieldRule rule = FieldRule::Plain;
  FieldReset reset = FieldReset::Keep;
  FieldUse use = FieldUse::ReadWrite;
  int limit = 0; ///< most characters that are kept of a text, 0 for no limit of its own
};

/// In the order in which keys are compared and lines are written. OFFSETFIRST stands twice: the
/// format holds it twice.
std::span<const SetupField> setupFields();

/// The value as text; empty for the keys that have no field.
QString valueOf(const SetupField& field, const SplitSetup& setup);

void copySetupField(const SetupField& field, const SplitSetup& from, SplitSetup& to);

/// Copies the edited copy to the working copy, but for the fields that live in the latter alone.
void commitSetup(const SplitSetup& edited, SplitSetup& working);

/// Sets the fields that every load starts from anew to their defaults: those of e-mail (but
/// EMAILPAUSE) and of the external command.
void resetLoadedFields(SplitSetup& setup);

} // namespace folivex
