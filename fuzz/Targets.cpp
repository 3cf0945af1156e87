#include "fuzz/Targets.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace fuzzing {

std::span<const Target> targets() {
  static constexpr std::array all = {
      Target{"page_words", runPageWords},     Target{"pdf_words", runPdfWords},
      Target{"pdf_outputs", runPdfOutputs},   Target{"setup_file", runSetupFile},
      Target{"naming_template", runNames},    Target{"name_list", runNameList},
      Target{"addresses", runAddresses},      Target{"batch_list", runBatchList},
      Target{"email_list", runEmailList},     Target{"email_sheet", runEmailSheet},
      Target{"smtp_replies", runSmtpReplies}, Target{"update_document", runUpdateDocument},
      Target{"command_line", runCommandLine}, Target{"saved_plan", runSavedPlan},
  };
  return all;
}

const Target* targetNamed(const QByteArray& name) {
  const auto all = targets();
  const auto found = std::ranges::find_if(all, [&](const Target& t) { return name == t.name; });
  return found != all.end() ? &*found : nullptr;
}

void require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

QByteArrayList partsOf(const QByteArray& input, qsizetype count) {
  const QByteArray divider("\n----\n");
  QByteArrayList parts;
  qsizetype start = 0;
  while (parts.size() + 1 < count) {
    const qsizetype end = input.indexOf(divider, start);
    if (end < 0) {
      break;
    }
    parts += input.mid(start, end - start);
    start = end + divider.size();
  }
  parts += input.mid(start);
  while (parts.size() < count) {
    parts += QByteArray();
  }
  return parts;
}

QString workPath(const QString& name) {
  static const QTemporaryDir folder;
  return folder.filePath(name);
}

void writeWorkFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
          file.write(bytes) == bytes.size() && file.flush());
}

QByteArray workFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void checkRepair(
    const QString& source,
    const std::function<int(const char16_t*, const char16_t*, const char16_t*)>& repairFile,
    const std::function<int(const QString&)>& pagesIn) {
  const QString target = workPath(QStringLiteral("repaired.pdf"));
  writeWorkFile(target, "before");
  const int pages =
      repairFile(source.toStdU16String().c_str(), u"", target.toStdU16String().c_str());
  require(pages > 0 ? pagesIn(target) == pages : workFile(target) == "before");
}

} // namespace fuzzing
