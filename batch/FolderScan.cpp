#include "batch/FolderScan.h"

#include "platform/FoundFile.h"
#include "platform/Paths.h"

#include <QFileInfo>

#include <string>
#include <system_error>
#include <utility>

namespace folivex {

namespace {

namespace fs = std::filesystem;

constexpr int mostTold = 3;

fs::path::string_type lastPart(const fs::path& path) {
  // path::filename() takes the whole path apart, which at 100,000 files is felt.
  const fs::path::string_type& text = path.native();
  const auto end = text.find_last_of(fs::path::preferred_separator);
  return end == fs::path::string_type::npos ? text : text.substr(end + 1);
}

bool contains(const fs::path& outer, const fs::path& inner) {
  return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

} // namespace

ScanResult& ScanResult::operator+=(const ScanResult& next) {
  added += next.added;
  stopped = stopped || next.stopped;
  unreadableFolders += next.unreadableFolders;
  unreadable = (unreadable + next.unreadable).mid(0, mostTold);
  noFiles += next.noFiles;
  noFilesTold = (noFilesTold + next.noFilesTold).mid(0, mostTold);
  return *this;
}

FolderScan::FolderScan(BatchEntries& rows, FolderScanWatcher& watcher,
                       std::chrono::milliseconds turns)
    : m_rows(rows), m_watcher(watcher), m_betweenTurns(turns) {}

ScanResult FolderScan::run(const QString& folder) {
  m_result = {};
  m_entered.clear();
  const fs::path start = QFileInfo(folder).filesystemFilePath();
  std::error_code ignored;
  m_start = fs::canonical(start, ignored);
  m_sinceTurn.invalidate();
  if (takeTurn(folder)) {
    enter(start, folder, m_start);
  }
  while (!m_levels.empty()) {
    Level& level = m_levels.back();
    const std::optional<Entry> entry = next(level);
    if (!entry) {
      if (level.failed) {
        noteUnreadable(level.shownPath);
      }
      m_levels.pop_back();
      continue;
    }
    const QString name = platform::textOf(entry->name);
    const QString path = platform::joinPath(level.shownPath, name);
    if (!takeTurn(path)) {
      break;
    }
    take(*entry, name, path);
  }
  m_levels.clear();
  addFound();
  return m_result;
}

void FolderScan::take(const Entry& entry, const QString& name, const QString& path) {
  if (entry.isFolder) {
    if (!name.startsWith(u'.')) {
      enterBelow(entry, path);
    }
  } else if (name.contains(QLatin1String(".pdf"))) {
    m_found.push_back(newEntry(path));
    ++m_result.added;
    if (!entry.isFile) {
      ++m_result.noFiles;
      if (m_result.noFilesTold.size() < mostTold) {
        m_result.noFilesTold += path;
      }
    }
    if (m_found.size() >= blockSize) {
      addFound();
    }
  }
}

void FolderScan::enterBelow(const Entry& entry, const QString& shownPath) {
  Level& above = m_levels.back();
  readAhead(above);
  const fs::path path = above.path / entry.name;
  fs::path real = above.realPath / entry.name;
  if (entry.isLink) {
    std::error_code error;
    real = fs::canonical(path, error);
    if (error) {
      noteUnreadable(shownPath);
      return;
    }
    if (contains(real, m_start)) {
      return; // a link to "/" would scan the whole disk
    }
  }
  enter(path, shownPath, real);
}

void FolderScan::enter(const fs::path& path, const QString& shownPath, const fs::path& realPath) {
  if (!m_entered.insert(realPath.native()).second) {
    return;
  }
  std::error_code error;
  Level level;
  level.path = path;
  level.shownPath = shownPath;
  level.realPath = realPath;
  level.reader = fs::directory_iterator(path, error);
  if (error) {
    noteUnreadable(shownPath);
    return;
  }
  m_levels.push_back(std::move(level));
}

std::optional<FolderScan::Entry> FolderScan::readNext(Level& level) {
  if (level.reader == fs::directory_iterator()) {
    return std::nullopt;
  }
  std::error_code ignored;
  const Entry entry{.name = lastPart(level.reader->path()),
                    .isFolder = level.reader->is_directory(ignored),
                    .isLink = level.reader->is_symlink(ignored),
                    .isFile = platform::problemOf(*level.reader).isEmpty()};
  std::error_code error;
  level.reader.increment(error);
  level.failed = level.failed || error;
  return entry;
}

std::optional<FolderScan::Entry> FolderScan::next(Level& level) {
  if (level.nextAhead < level.readAhead.size()) {
    return std::move(level.readAhead[level.nextAhead++]);
  }
  return readNext(level);
}

void FolderScan::readAhead(Level& level) {
  while (std::optional<Entry> entry = readNext(level)) {
    level.readAhead.push_back(*std::move(entry));
    if (!takeTurn(level.shownPath)) {
      break;
    }
  }
  level.reader = fs::directory_iterator();
}

void FolderScan::noteUnreadable(const QString& path) {
  ++m_result.unreadableFolders;
  if (m_result.unreadable.size() < mostTold) {
    m_result.unreadable += path;
  }
}

bool FolderScan::takeTurn(const QString& place) {
  if (!m_sinceTurn.isValid() || m_sinceTurn.elapsed() >= m_betweenTurns.count()) {
    addFound();
    m_watcher.showPlace(place);
    m_watcher.handlePendingEvents();
    m_sinceTurn.start();
  }
  m_result.stopped = m_watcher.stopRequested();
  return !m_result.stopped;
}

void FolderScan::addFound() {
  m_rows.append(std::exchange(m_found, {}));
}

} // namespace folivex
