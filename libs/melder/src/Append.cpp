#include "Append.h"

#include "Document.h"
#include "Joining.h"
#include "common/AsideFile.h"
#include "common/Failure.h"
#include "common/FileLock.h"
#include "common/Paths.h"
#include "melder/melder.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFWriter.hh>

#include <filesystem>
#include <system_error>

namespace melder {

namespace {

/// What is written goes to the file that is written aside.
class AsidePipeline : public Pipeline {
public:
  explicit AsidePipeline(common::AsideFile& file) : Pipeline("aside", nullptr), m_file(file) {}
  void write(const unsigned char* data, size_t length) override {
    m_file.append({reinterpret_cast<const char*>(data), length});
  }
  void finish() override {}

private:
  common::AsideFile& m_file;
};

/// And no link to one.
bool isFile(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(
      std::filesystem::symlink_status(common::pathOf(path), ignored));
}

/// The joined document to `target`; streams as they are stored, protection as `receiver` has it.
Written writeJoined(Document& receiver, Document& part, const std::string& target, Digest digest) {
  Transplant transplant(receiver.pdf());
  join(receiver, part, transplant);
  common::AsideFile file(
      target, {.model = isFile(target) ? target : std::string(), .outlastsPowerFailure = true});
  AsidePipeline out(file);
  QPDFWriter writer(receiver.pdf());
  writer.setOutputPipeline(&out);
  writer.setStreamDataMode(qpdf_s_preserve);
  if (const std::string version = part.version(); !version.empty()) {
    writer.setMinimumPDFVersion(version);
  }
  // Encryption takes random numbers, so that a protected file is another one each time.
  writer.setDeterministicID(!receiver.pdf().isEncrypted());
  writer.write();
  if (transplant.lostData()) {
    throw common::Failure(MELDER_DAMAGED,
                          part.path() + ": damaged: parts of its pages cannot be read");
  }
  receiver.requireUnchanged();
  part.requireUnchanged();
  Written written;
  if (digest == Digest::Made) {
    written.digest = pages::sha256Of(file);
  }
  written.identity = file.keep();
  return written;
}

} // namespace

Written appendToFile(const std::string& addition, const std::string& existing, Digest digest) {
  const common::FileLock lock(existing);
  common::requireWritable(existing);
  Document part(addition);
  Document receiver(existing, common::Links::Refused);
  return writeJoined(receiver, part, existing, digest);
}

Written appendToNewFile(const std::string& first, const std::string& second,
                        const std::string& target, Digest digest) {
  if (isFile(target)) {
    common::requireWritable(target);
  }
  Document receiver(first);
  Document part(second);
  return writeJoined(receiver, part, target, digest);
}

} // namespace melder
