#include "updates/UpdateOffer.h"

#include "updates/UpdateSettings.h"
#include "updates/VersionNumber.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace folivex {

namespace {

QString plainNote(const QString& text) {
  constexpr qsizetype mostCharacters = 1000;
  QString note;
  for (const QChar c : text.left(mostCharacters)) {
    if (c == u'\n' ||
        (c.category() != QChar::Other_Control && c.category() != QChar::Other_Format)) {
      note += c;
    }
  }
  return note.trimmed();
}

} // namespace

QString readOffer(const QByteArray& document, UpdateOffer& offer) {
  QJsonParseError error;
  const QJsonDocument json = QJsonDocument::fromJson(document, &error);
  if (error.error != QJsonParseError::NoError || !json.isObject()) {
    return QStringLiteral("the server's answer is no document about a version");
  }
  const QJsonObject object = json.object();
  const QString version = object.value(QLatin1String("version")).toString();
  if (!VersionNumber::read(version)) {
    return QStringLiteral("the server's answer tells no version");
  }
  const QString page = object.value(QLatin1String("page")).toString();
  offer.version = version;
  offer.page = addressProblemOf(page).isEmpty() ? page : QString();
  offer.note = plainNote(object.value(QLatin1String("note")).toString());
  return {};
}

UpdateResult resultOf(const UpdateOffer& offer, const QString& ownVersion) {
  const auto offered = VersionNumber::read(offer.version);
  const auto own = VersionNumber::read(ownVersion);
  if (!offered || !own) {
    return failedResult(
        QStringLiteral("versions %1 and %2 cannot be compared").arg(offer.version, ownVersion));
  }
  if (*offered > *own) {
    return {UpdateOutcome::Newer, offer,
            QStringLiteral("Version %1 is available; this is version %2.")
                .arg(offer.version, ownVersion)};
  }
  if (*offered < *own) {
    return {UpdateOutcome::Older, offer,
            QStringLiteral("This version, %1, is newer than the published version %2.")
                .arg(ownVersion, offer.version)};
  }
  return {UpdateOutcome::Same, offer,
          QStringLiteral("This is the newest version, %1.").arg(ownVersion)};
}

UpdateResult failedResult(const QString& reason) {
  return {UpdateOutcome::Failed, {}, QStringLiteral("The check failed: %1.").arg(reason)};
}

} // namespace folivex
