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

/// The joined document to `target`; streams as they are stored, protection as `receiver` has it.
void writeJoined(Document& receiver, Document& part, const std::string& target) {
  Transplant transplant(receiver.pdf());
  join(receiver, part, transplant);
  const bool isThere = common::FileIdentity::of(target).has_value();
  common::AsideFile file(target,
                         {.model = isThere ? target : std::string(), .outlastsPowerFailure = true});
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
  file.keep();
}

} // namespace

void appendToFile(const std::string& addition, const std::string& existing) {
  const std::string place = common::linkEnd(existing);
  const common::FileLock lock(place);
  common::requireWritable(place);
  Document part(addition);
  Document receiver(place);
  writeJoined(receiver, part, place);
}

void appendToNewFile(const std::string& first, const std::string& second,
                     const std::string& target) {
  // A link is followed, so that it stays one.
  const bool isThere = common::FileIdentity::of(target).has_value();
  const std::string place = isThere ? common::linkEnd(target) : target;
  if (isThere) {
    common::requireWritable(place);
  }
  Document receiver(first);
  Document part(second);
  writeJoined(receiver, part, place);
}

} // namespace melder
