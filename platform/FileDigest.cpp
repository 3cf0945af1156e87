#include "platform/FileDigest.h"

#include "platform/FileSystem.h"

#include <QCryptographicHash>

namespace folivex::platform {

namespace {

constexpr qint64 digestBlock = 1024LL * 1024;
constexpr qsizetype digestLength = 32;

} // namespace

FileDigest FileDigest::of(const QString& path, const std::function<void()>& tick) {
  QFile file;
  FileFailure failure;
  if (!openForReading(file, path, FileAccess::Ordinary, failure)) {
    return {};
  }
  QCryptographicHash hash(QCryptographicHash::Sha256);
  FileDigest digest{0, {}};
  for (QByteArray block = file.read(digestBlock); !block.isEmpty();
       block = file.read(digestBlock)) {
    hash.addData(block);
    digest.size += block.size();
    if (tick) {
      tick();
    }
  }
  if (file.error() != QFileDevice::NoError) {
    return {};
  }
  digest.sha256 = hash.result();
  return digest;
}

FileDigest FileDigest::ofBytes(const QByteArray& bytes) {
  return {bytes.size(), QCryptographicHash::hash(bytes, QCryptographicHash::Sha256)};
}

QString FileDigest::text() const {
  return isKnown() ? QString::number(size) + u':' + QString::fromLatin1(sha256.toHex()) : QString();
}

FileDigest FileDigest::fromText(const QString& text) {
  const qsizetype colon = text.indexOf(u':');
  bool isNumber = false;
  FileDigest digest;
  digest.size = text.left(colon).toLongLong(&isNumber);
  digest.sha256 = QByteArray::fromHex(text.mid(colon + 1).toLatin1());
  return colon > 0 && isNumber && digest.sha256.size() == digestLength ? digest : FileDigest();
}

} // namespace folivex::platform
