#include "engine/setup/SetupStore.h"

#include "engine/setup/SetupFields.h"
#include "engine/setup/SetupFile.h"
#include "platform/FileLocks.h"
#include "platform/TextFile.h"

#include <QFileInfo>

namespace folivex {

namespace {

constexpr QLatin1StringView namedExtension(".fxs");
constexpr qint64 maxExample = 1'000'000;

QString defaultPath() {
  const platform::InstallFolder install = platform::installFolderOfSetup();
  const QString folder = install.isAsked ? install.path : platform::temporaryFolder();
  return folder.isEmpty() ? QString() : platform::joinPath(folder, QStringLiteral("Folivex.ini"));
}

bool isDefaultPath(const QString& path) {
  const QString own = defaultPath();
  return !own.isEmpty() && platform::isSameFile(path, own);
}

/// What a run would read that nothing was committed for; every commit replaces it.
SplitSetup firstWorkingCopy() {
  SplitSetup setup = defaultSetup();
  setup.startFromPage = 1;
  setup.alwaysOverwrite = true;
  setup.alwaysAppend = true;
  return setup;
}

/// Takes a copy whole or not at all. That it fails is no matter: the built-in settings serve too.
void copyExample(const QString& from, const QString& to) {
  QFile source;
  platform::Replacement copy;
  platform::FileFailure failure;
  if (!platform::openForReading(source, from, platform::FileAccess::Ordinary, failure)) {
    return;
  }
  const QByteArray content = source.read(maxExample);
  if (copy.open(to, platform::FileAccess::Private, failure) &&
      copy.file().write(content) == content.size()) {
    static_cast<void>(copy.keep(failure));
  }
}

/// What a killed run left in the folder of the default setup.
void removeDeadPartsBeside(const QString& path) {
  if (isDefaultPath(path)) {
    platform::removeDeadParts(platform::folderOf(path));
  }
}

/// Where a file has a name while it is written, a killed run would leave the passwords in it: there
/// the old setup is written over.
bool openForSaving(platform::TextWriter& writer, const QString& path, const SplitSetup& setup) {
  const platform::FileAccess access = platform::accessForSecrets(path);
  const bool hasPassword = !setup.emailPassword.isEmpty() || !setup.pdfPassword.isEmpty();
  return hasPassword && !platform::Replacement::isUnseen(path)
             ? writer.open(path, access)
             : writer.openReplacement(path, access);
}

SetupResult notRead(const QString& path, const platform::TextReader& reader) {
  SetupResult result{SetupStatus::NotRead, {}, {}};
  if (path.contains(namedExtension)) {
    result.message = QStringLiteral("file error! can't read parameters file: %1").arg(path);
  }
  if (reader.error() != platform::FileError::NotFound) {
    result.note =
        QStringLiteral("The setup file %1 was not used: %2").arg(path, reader.errorText());
  }
  return result;
}

SetupResult notWritten(const QString& path, const QString& reason) {
  return {SetupStatus::NotWritten,
          QStringLiteral("file error! can't write parameters file: %1").arg(path),
          QStringLiteral("The setup file %1 was not written: %2").arg(path, reason)};
}

/// Empty for a setup; a run by anything else would be one with the settings of the last run.
QString refusalOf(const SetupText& text, bool hasSettings) {
  if (!text.hasHeader && !hasSettings) {
    return QStringLiteral("is no setup file: it has neither the header of one nor any setting");
  }
  return text.isCutOff ? QStringLiteral("is cut off: its last line does not end") : QString();
}

QString lossNote(const SplitSetup& setup) {
  const QStringList keys = keysLostInFile(setup);
  if (keys.isEmpty()) {
    return {};
  }
  return QStringLiteral("These settings hold a \";\" or a line end, or are too long, and will not "
                        "come back whole from the setup file: %1")
      .arg(keys.join(QStringLiteral(", ")));
}

} // namespace

SetupStore::SetupStore(const QString& installFolder)
    : m_installFolder(installFolder), m_edited(defaultSetup()), m_working(firstWorkingCopy()) {}

void SetupStore::commit() {
  commitSetup(m_edited, m_working);
}

SetupResult SetupStore::LoadSetup(const QString& path, LoadMode mode) {
  if (mode != LoadMode::AutomationCheck) {
    resetLoadedFields(m_edited);
  }
  removeDeadPartsBeside(path);
  platform::TextReader reader;
  if (!reader.open(path, platform::accessForSecrets(path))) {
    return notRead(path, reader);
  }
  if (mode == LoadMode::AutomationCheck) {
    QString line;
    m_automation = (reader.readLine(line) && isAutomationLine(line)) || m_automation;
    return {};
  }
  // Into copies, so that a disk that fails half-way leaves no half of a setup.
  SplitSetup edited = m_edited;
  SplitSetup working = m_working;
  bool automation = m_automation;
  SetupTarget target{edited, working, automation, m_unattended};
  const SetupText text = readSetupLines(reader, target);
  if (reader.error() != platform::FileError::None) {
    return notRead(path, reader);
  }
  // A person sees what came of it.
  const QString refusal = m_unattended ? refusalOf(text, !target.keys.isEmpty()) : QString();
  if (!refusal.isEmpty()) {
    return {SetupStatus::NotRead, {}, QStringLiteral("%1: %2").arg(path, refusal)};
  }
  m_edited = edited;
  m_working = working;
  m_automation = mode == LoadMode::Shown ? m_automation : automation;
  m_currentPath = isDefaultPath(path) ? QString() : path;
  commit();
  SetupResult result;
  if (target.keys.isEmpty()) {
    result.note = QStringLiteral("%1: no setting was found in this file").arg(path);
  } else if (const QStringList left = leftBy(target.keys); m_unattended && !left.isEmpty()) {
    result.note = QStringLiteral("%1: has no line for these settings, which stay as the last run "
                                 "had them: %2")
                      .arg(path, left.join(QStringLiteral(", ")));
  }
  return result;
}

/// Keys of the settings that a file with these keys left as they were, unless they have their
/// defaults anyhow. The source is named by whoever starts the run.
QStringList SetupStore::leftBy(const QSet<QLatin1StringView>& keys) const {
  const SplitSetup defaults = defaultSetup();
  QStringList left;
  for (const SetupField& field : setupFields()) {
    SplitSetup changed = m_working;
    copySetupField(field, defaults, changed);
    const bool isGiven = keys.contains(field.key) || (field.key == QLatin1String("ADDBWORDS") &&
                                                      keys.contains(QLatin1StringView("ADDSPACE")));
    if (!isGiven && field.key != QLatin1String("FILENAME") && !left.contains(field.key) &&
        changed != m_working) {
      left += field.key;
    }
  }
  return left;
}

SetupResult SetupStore::SaveSetup(const QString& path, SavePath savePath) {
  const bool follow = savePath == SavePath::FollowCurrent;
  const bool toCurrent = follow && !m_currentPath.isEmpty() && isDefaultPath(path);
  const QString target = toCurrent ? m_currentPath : path;
  commit();

  platform::TextWriter writer;
  removeDeadPartsBeside(target);
  if (!openForSaving(writer, target, m_working)) {
    return notWritten(target, writer.errorText());
  }
  writer.write(setupFileText(m_working));
  if (!writer.close()) {
    return notWritten(target, writer.errorText());
  }
  if (follow) {
    m_currentPath = isDefaultPath(target) ? QString() : target;
  }
  SetupResult result{SetupStatus::Ok, {}, lossNote(m_working)};
  if (target.contains(namedExtension) && !automation()) {
    result.message = QStringLiteral("%1 saved.").arg(target);
  }
  return result;
}

QString SetupStore::DefaultSetupPath() const {
  QString path = defaultPath();
  const QFileInfo info(path);
  if (!path.isEmpty() && !info.exists() && !info.isSymLink()) {
    copyExample(platform::joinPath(m_installFolder, QStringLiteral("example.fxs")), path);
  }
  return path;
}

} // namespace folivex
