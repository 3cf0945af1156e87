// The external split command.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QStringList>

namespace folivex {

/// What the settings dialog offers for an external command.
QString offeredExternalCommand();
QString offeredExternalParams();

/// A command ready to be started.
struct ExternalCommand {
  QString program;
  QStringList arguments;
};

/// True when outputs are written by the external command and not by the split library.
bool usesExternalCommand(const SplitSetup& setup);

/// The command of a setup for one output, pages counted from 1. The template is cut into arguments
/// first and the placeholders are filled in after, so that no character of a path can end an
/// argument or add one.
ExternalCommand externalCommand(const SplitSetup& setup, const QString& source,
                                const QString& target, int firstPage, int lastPage);

/// Whether a file ends with the mark of a PDF's end: one that was cut off does not.
bool endsLikePdf(const QString& path);

} // namespace folivex
