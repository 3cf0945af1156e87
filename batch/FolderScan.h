// FolderScan: finds the PDF files of a folder and all folders below it.
#pragma once

#include "batch/BatchEntries.h"

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <chrono>
#include <filesystem>
#include <optional>
#include <unordered_set>
#include <vector>

namespace folivex {

/// Lives on while a scan goes on.
class FolderScanWatcher {
public:
  virtual ~FolderScanWatcher() = default;

  /// Where the scan is; told at the turns only.
  virtual void showPlace(const QString& path) = 0;
  virtual void handlePendingEvents() = 0;
  /// Asked at every entry.
  virtual bool stopRequested() const = 0;
};

struct ScanResult {
  int added = 0;
  bool stopped = false;
  int unreadableFolders = 0;
  QStringList unreadable;       ///< the first few of them
  int noFiles = 0;              ///< of those added: what no run can open
  QStringList noFilesTold = {}; ///< the first few of them

  /// One after the other.
  ScanResult& operator+=(const ScanResult& next);
};

/// Adds every file whose name holds ".pdf" anywhere, in small letters, to the end of the rows, in
/// the order in which the file system tells them, a folder at the point where it is met. What no
/// run can open (a link that leads nowhere, a pipe, a name that is no text) is added too, for the
/// run to say so in its row, and counted. Folders
/// whose names begin with "." are left out. Links to folders are followed; a folder that is reached
/// by several ways is taken once, so links in a circle come to an end, and a link to a folder that
/// the scan itself lies in is none to follow.
class FolderScan {
public:
  /// Turns (showing the place, handling events) come at most this often.
  static constexpr std::chrono::milliseconds betweenTurns{20};
  /// Rows come in blocks of at most this many.
  static constexpr std::size_t blockSize = 1000;

  FolderScan(BatchEntries& rows, FolderScanWatcher& watcher,
             std::chrono::milliseconds turns = betweenTurns);

  ScanResult run(const QString& folder);

private:
  struct Entry {
    std::filesystem::path::string_type name;
    bool isFolder = false;
    bool isLink = false;
    bool isFile = true; ///< of those that are no folder: one that a run can open
  };

  /// A folder that is being read. It holds a file handle of the system only as long as no folder
  /// below it is read: trees may be deeper than handles are many.
  struct Level {
    std::filesystem::path path;
    QString shownPath;
    std::filesystem::path realPath; ///< without links
    std::filesystem::directory_iterator reader;
    std::vector<Entry> readAhead;
    std::size_t nextAhead = 0;
    bool failed = false;
  };

  void enter(const std::filesystem::path& path, const QString& shownPath,
             const std::filesystem::path& realPath);
  void enterBelow(const Entry& entry, const QString& shownPath);
  static std::optional<Entry> next(Level& level);
  static std::optional<Entry> readNext(Level& level);
  void readAhead(Level& level);
  void noteUnreadable(const QString& path);
  void take(const Entry& entry, const QString& name, const QString& path);
  /// Whether the scan goes on.
  bool takeTurn(const QString& place);
  void addFound();

  BatchEntries& m_rows;
  FolderScanWatcher& m_watcher;
  std::chrono::milliseconds m_betweenTurns;
  QElapsedTimer m_sinceTurn;
  std::filesystem::path m_start; ///< without links
  std::vector<Level> m_levels;
  std::unordered_set<std::filesystem::path::string_type> m_entered;
  std::vector<BatchEntry> m_found;
  ScanResult m_result;
};

} // namespace folivex
