// Targets: what takes bytes from outside, each with what must hold whatever these are.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <functional>
#include <span>

namespace fuzzing {

/// Bytes through one way into the program. Ends the process (see require()) where something does
/// not hold; a sanitizer ends it for the rest. Inputs that found something lie in fuzz/NAME, and
/// the ordinary tests run them.
struct Target {
  const char* name;
  void (*run)(const QByteArray& input);
};

std::span<const Target> targets();
/// Null when there is none of that name.
const Target* targetNamed(const QByteArray& name);

/// Aborts: an exception could be taken for one of the program's own, and handled.
void require(bool condition);

/// The parts of an input between lines of "----"; those that it lacks are empty.
QByteArrayList partsOf(const QByteArray& input, qsizetype count);

/// A folder of this process alone, in the temporary one; gone at its end.
QString workPath(const QString& name);
void writeWorkFile(const QString& path, const QByteArray& bytes);
QByteArray workFile(const QString& path);

/// What a library's RepairFile is held to: the copy has the pages that it tells of, and where there
/// is none the file that was there stays.
void checkRepair(
    const QString& source,
    const std::function<int(const char16_t*, const char16_t*, const char16_t*)>& repairFile,
    const std::function<int(const QString&)>& pagesIn);

void runPageWords(const QByteArray& input);
void runPdfWords(const QByteArray& input);
void runPdfOutputs(const QByteArray& input);
void runSetupFile(const QByteArray& input);
void runNames(const QByteArray& input);
void runNameList(const QByteArray& input);
void runAddresses(const QByteArray& input);
void runBatchList(const QByteArray& input);
void runEmailList(const QByteArray& input);
void runEmailSheet(const QByteArray& input);
void runSmtpReplies(const QByteArray& input);
void runUpdateDocument(const QByteArray& input);
void runCommandLine(const QByteArray& input);
void runSavedPlan(const QByteArray& input);

} // namespace fuzzing
