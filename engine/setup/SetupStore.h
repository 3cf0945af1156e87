// SetupStore: the two copies of the setup, and the files that they come from and go to.
#pragma once

#include "engine/setup/SplitSetup.h"
#include "platform/Paths.h"

#include <QLatin1StringView>
#include <QSet>
#include <QString>
#include <QStringList>

namespace folivex {

enum class SetupStatus {
  Ok,
  NotRead,   ///< the setup file is missing or cannot be read
  NotWritten ///< it cannot be written; the file is as it was before
};

/// What a load or save has to tell. Nothing is shown here: the caller decides.
struct [[nodiscard]] SetupResult {
  SetupStatus status = SetupStatus::Ok;
  /// For a message box; empty when none is due. A failed save has a text too, for a log or an
  /// unattended run: with a person at the window it is not shown.
  QString message;
  /// A finding to tell in any mode beside the message (a file that was refused and why, values that
  /// the file format cannot hold). Names keys and paths, never values.
  QString note;

  bool ok() const { return status == SetupStatus::Ok; }
  /// The code that an unattended program ends with: 0 or -5.
  int exitCode() const { return status == SetupStatus::NotWritten ? -5 : 0; }
};

enum class LoadMode {
  Full,
  /// Full, but that the key AUTOMATION counts for nothing: the file was opened to be looked at.
  Shown,
  /// Looks for the key AUTOMATION in the first line and changes nothing but the automation flag.
  /// The header is a line like any other here, so that only a file without one is found.
  AutomationCheck
};

/// Where a save without a choice of the person goes.
enum class SavePath {
  /// To the named setup file when there is one and the path given is the default file's; the path
  /// written to becomes the current one.
  FollowCurrent,
  Keep ///< to the path given, and the current path stays
};

/// Owns both copies. The dialogs edit edited(); a run reads working(). The report options,
/// HORIZWORDSPACING and STRIPEND have no edited copy: their dialogs edit working() itself.
class SetupStore {
public:
  /// `installFolder` is where the example setup lies: beside the program, if nothing else is given.
  explicit SetupStore(const QString& installFolder = platform::programFolder());

  SplitSetup& edited() { return m_edited; }
  const SplitSetup& edited() const { return m_edited; }
  SplitSetup& working() { return m_working; }
  const SplitSetup& working() const { return m_working; }

  /// A setup file with the key AUTOMATION was loaded, which counts from then on, or the work is
  /// unattended for now.
  bool automation() const { return m_automation || m_unattended; }
  void setUnattended(bool on) { m_unattended = on; }

  /// The named setup file that was loaded or saved last, empty when there is none.
  QString currentPath() const { return m_currentPath; }

  /// Copies what is edited to the working copy.
  void commit();

  /// Reads the file into the edited copy and commits. When it cannot be read, the record keeps its
  /// values but for those that every load resets (see resetLoadedFields()), and nothing is
  /// committed. While the work is unattended, a file that is no setup or is cut off counts as not
  /// read, and what a part of a setup leaves as it was is told. A missing file whose name has no
  /// ".fxs" in it is no matter for a message.
  SetupResult LoadSetup(const QString& path, LoadMode mode = LoadMode::Full);

  /// Commits, and writes the whole record. The old file stays whole until the new one is, but for a
  /// record with a password on a file system that cannot do so without a name for both; the new one
  /// is made with permissions 0600.
  SetupResult SaveSetup(const QString& path, SavePath savePath = SavePath::FollowCurrent);

  /// The path of "Folivex.ini" in the temporary folder, or in the install folder where that is
  /// asked for; empty when there is no such folder. When
  /// there is no file yet, the installed "example.fxs" is copied there first, if there is one.
  QString DefaultSetupPath() const;

private:
  QStringList leftBy(const QSet<QLatin1StringView>& keys) const;

  QString m_installFolder;
  SplitSetup m_edited;
  SplitSetup m_working;
  QString m_currentPath;
  bool m_automation = false;
  bool m_unattended = false;
};

} // namespace folivex
