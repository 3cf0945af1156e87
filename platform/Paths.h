// Paths: the folders that differ from system to system, and taking paths apart.
#pragma once

#include <QChar>
#include <QString>

#include <string>

namespace folivex::platform {

/// The separator that the program puts into paths that it makes.
QChar separator();

/// Both "/" and "\" separate folders, on every system: setups travel between systems.
bool isSeparator(QChar c);

/// The name without its folder: what stands behind the last separator.
QString fileTitle(const QString& path);

/// The folder without its last separator (a root keeps it); empty for a name without a folder.
QString folderOf(const QString& path);

/// `folder`, one separator, `name`. An empty folder gives `name` alone.
QString joinPath(const QString& folder, const QString& name);

/// Without the blanks at its end: they are no part of a file's name.
QString withoutTrailingBlanks(const QString& path);

#ifdef Q_OS_WIN
/// The path as calls of the system take it, at any length.
std::wstring systemPath(const QString& path);
#endif

/// "nul" in any case, or this system's own null device.
bool isNullDevice(const QString& path);

/// Whether both name the same file, links followed; two names of files that do not exist yet are
/// compared as text.
bool isSameFile(const QString& a, const QString& b);

/// The user's temporary folder with its separator at the end, at most 255 characters; made when it
/// is missing. $TMPDIR when that names a folder, else a private folder in the user's home. Empty
/// when there is none to be trusted. The environment is asked at every call.
QString temporaryFolder();

/// Whether `path` lies directly in the temporary folder, where only private files are used.
bool isInTemporaryFolder(const QString& path);

/// Where the outputs go when no setup says otherwise. Not made here.
QString defaultOutputFolder();

/// The folder of the running program, without a separator at the end.
QString programFolder();

/// Where the default setup file lies in place of the temporary folder. Asked for with the
/// environment variable FOLIVEX_SETUP_IN_INSTALL_FOLDER, and only on Windows, whose registry knows
/// the install folder.
struct InstallFolder {
  bool isAsked = false;
  QString path;    ///< empty when it is not known
  QString problem; ///< why it is not
};
InstallFolder installFolderOfSetup();

/// One harmless component of a path made of text that came from a page: separators and control
/// characters (those from U+0080 to U+009F too) become "_", dots and blanks at the end are cut (so
/// that "." and ".." go), the names of devices get a "_" in front. Never empty: nothing left gives
/// "_".
QString safePathComponent(const QString& text);

} // namespace folivex::platform
