#include "scanlite/Barcodes.h"

#include "platform/ChildProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>

namespace scanlite {

namespace {

using folivex::platform::ChildEnd;

constexpr int mostDeathsOfAPage = 4;
constexpr qsizetype mostBarcodesOfAPage = 200;
constexpr qsizetype mostProblems = 20;
constexpr double farthest = 1e6;

/// What the workers wrote, and what the last of them was at.
class Findings {
public:
  explicit Findings(const QString& path) : m_file(path) {}

  /// Reads on behind what was read before.
  void readOn() {
    if (!m_file.isOpen() && !m_file.open(QIODevice::ReadOnly)) {
      return;
    }
    while (!m_file.atEnd()) {
      take(m_file.readLine().trimmed().split(' '));
    }
  }

  int page = 0;        ///< that was begun last
  QByteArray step;     ///< of that page, begun last; empty while it is drawn
  bool isDone = false; ///< with that page
  PageBarcodes found;

  void tellProblem(const QString& text) {
    if (found.problems.size() < mostProblems) {
      found.problems.append(QStringLiteral("page %1: %2").arg(page).arg(text));
    } else if (found.problems.size() == mostProblems) {
      found.problems.append(QStringLiteral("and more pages"));
    }
  }

private:
  void take(const QList<QByteArray>& words) {
    constexpr qsizetype wordsOfCode = 7;
    if (words[0] == "pages" && words.size() == 2) {
      found.pageCount = words[1].toInt();
    } else if (words[0] == "page" && words.size() == 2) {
      page = words[1].toInt();
      step.clear();
      isDone = false;
      m_codes.clear();
    } else if (words[0] == "step" && words.size() == 2) {
      step = words[1];
    } else if (words[0] == "code" && words.size() == wordsOfCode) {
      takeCode(words);
    } else if (words[0] == "undrawn") {
      isDone = true;
      tellProblem(QStringLiteral("it could not be drawn, its barcodes are missing"));
    } else if (words[0] == "done" || words[0] == "doubtful") {
      isDone = true;
      if (words[0] == "doubtful") {
        tellProblem(QStringLiteral("a barcode cannot be read for sure and is left out"));
      }
      if (!m_codes.empty()) {
        found.ofPage[page] = m_codes;
      }
    }
  }

  void takeCode(const QList<QByteArray>& words) {
    PageBarcode code;
    code.kind = QString::fromLatin1(words[5]);
    code.text = QString::fromUtf8(QByteArray::fromHex(words[6]));
    double* const sides[] = {&code.left, &code.top, &code.right, &code.bottom};
    for (qsizetype i = 0; i < 4; ++i) {
      *sides[i] = std::clamp(words[i + 1].toDouble(), -farthest, farthest);
    }
    if (std::ssize(m_codes) < mostBarcodesOfAPage) {
      m_codes.push_back(code);
    }
  }

  QFile m_file;
  std::vector<PageBarcode> m_codes;
};

/// Where the next worker begins, and what it leaves out of that page.
struct Resume {
  int page = 1;
  QStringList leftOut;
};

Resume behindDeath(Findings& findings, const Resume& from) {
  Resume next{findings.page, findings.page == from.page ? from.leftOut : QStringList()};
  if (findings.isDone) {
    return {findings.page + 1, {}};
  }
  if (findings.step.isEmpty() || next.leftOut.size() >= mostDeathsOfAPage) {
    findings.tellProblem(QStringLiteral("its barcodes could not be read"));
    return {findings.page + 1, {}};
  }
  if (next.leftOut.isEmpty()) {
    findings.tellProblem(QStringLiteral("a reader failed over a part of it, a barcode may be "
                                        "missing"));
  }
  next.leftOut.append(QString::fromLatin1(findings.step));
  return next;
}

} // namespace

PageBarcodes readBarcodes(const QString& pdf, const QString& workFolder) {
  const QString result = QDir(workFolder).filePath(QStringLiteral("barcodes.txt"));
  Findings findings(result);
  folivex::platform::ChildProgram worker;
  worker.name = QCoreApplication::applicationFilePath();
  worker.longestFile = qint64{256} << 20;
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  worker.mostMemory = qint64{2} << 30;
#endif
  for (Resume from;;) {
    worker.arguments = {barcodeWorker, pdf, result, QString::number(from.page),
                        from.leftOut.join(u',')};
    const folivex::platform::ChildRun run = runChild(worker);
    findings.readOn();
    if (run.end == ChildEnd::Exited && run.exitCode == 0) {
      break;
    }
    if (run.end == ChildEnd::Stopped || findings.page < from.page) {
      findings.found.stopped = run.end == ChildEnd::Stopped;
      findings.found.problems.append(QStringLiteral("barcodes could not be looked for"));
      break;
    }
    from = behindDeath(findings, from);
  }
  return findings.found;
}

} // namespace scanlite
