// UpdateOffer: what a server tells of the newest version.
#pragma once

#include <QByteArray>
#include <QString>

namespace folivex {

/// From the JSON document {"version": "4.1.0", "page": "https://...", "note": "..."}; page and note
/// may be missing.
struct UpdateOffer {
  QString version; ///< one that VersionNumber reads
  QString page;    ///< an https address, or empty
  QString note;    ///< plain text, at most 1,000 characters; may hold line ends

  bool operator==(const UpdateOffer&) const = default;
};

/// Reads the document; empty on success, else what is wrong with it. The server is not trusted: a
/// page of any other scheme is dropped, control characters of the note as well.
QString readOffer(const QByteArray& document, UpdateOffer& offer);

enum class UpdateOutcome {
  Newer, ///< the server has a newer version than this
  Same,
  Older, ///< this one is newer than what is published
  Failed
};

struct UpdateResult {
  UpdateOutcome outcome = UpdateOutcome::Failed;
  UpdateOffer offer; ///< empty when failed
  QString text;      ///< for a person, in plain words and plain text
};

/// Compares an offer with the program's own version.
UpdateResult resultOf(const UpdateOffer& offer, const QString& ownVersion);
UpdateResult failedResult(const QString& reason);

} // namespace folivex
