// OutputReservation: what happens when an output's path is taken.
#pragma once

#include "engine/base/PagePart.h"
#include "engine/naming/FileSystemRules.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace folivex {

/// One output on its way to the writer. Pages count from 1, inclusive.
struct ReservedOutput {
  QString path;       ///< empty when a later output of the same name replaced this one
  int firstPage = -1; ///< never 0; -1 when replaced
  int lastPage = -1;

  bool operator==(const ReservedOutput&) const = default;
};

/// Takes outputs in the order in which they are to be written.
class OutputList {
public:
  virtual ~OutputList() = default;

  /// An output to write. One with an empty path was replaced and is to be ignored.
  virtual void output(const ReservedOutput& reserved) = 0;

  /// Told, with path and pages as they were, right before a replaced output is handed on: its pages
  /// reach no file.
  virtual void replaced(const ReservedOutput& /*lost*/) {}

  /// Told of an output that is another run's.
  virtual void elsewhere(const ReservedOutput& /*output*/) {}

  /// Told of an output of a part whose place is not free: it goes nowhere.
  virtual void occupied(const ReservedOutput& /*output*/) {}

  /// Told when the run was stopped and what follows was complete before.
  virtual void wereComplete() {}
};

/// The places that outputs go to. A dry plan answers without touching the disk.
class OutputPlaces {
public:
  virtual ~OutputPlaces() = default;

  virtual bool exists(const QString& path) = 0;

  /// Whether the file at an existing path must not be replaced or appended to, as the source
  /// itself.
  virtual bool isProtected(const QString& path) = 0;

  /// Takes a free place for an output; false when it is not free. One that cannot be taken for any
  /// other reason counts as taken: the reason shows when the output is written.
  virtual bool claim(const QString& path) { return !exists(path); }
};

/// The disk. Folders and links that lead nowhere count as existing.
class DiskOutputPlaces : public OutputPlaces {
public:
  /// `protectedFiles`: the source, and what else is being read.
  explicit DiskOutputPlaces(const QStringList& protectedFiles) : m_protected(protectedFiles) {}

  bool exists(const QString& path) override;
  bool isProtected(const QString& path) override;

private:
  QStringList m_protected;
};

/// Reserves the paths of one run. An object lasts for one run, since it remembers the names that it
/// promised: an output may be on its way and not yet on disk.
///
/// In a run that makes only a part of the outputs, names are found as in a folder that holds
/// nothing but the source: what another run of the same source left there must not change them.
/// Outputs of other parts take part in it, and are not handed on. An output of this part whose
/// place is not free then goes nowhere.
class OutputReservation {
public:
  /// What the setup says about an output that exists.
  struct WhenTaken {
    bool overwrite = false;
    bool append = false;
  };

  /// Entries that wait at most before they are handed on.
  static constexpr std::size_t pendingLimit = 50'000;

  /// `places` and `list` must outlive the reservation.
  OutputReservation(WhenTaken whenTaken, OutputPlaces& places, OutputList& list,
                    FileSystemRules rules = FileSystemRules::ofThisSystem(),
                    const PagePart& part = {});

  /// Reserves a path that ends in ".pdf" for pages firstPage..lastPage (from 1, inclusive) and
  /// hands it on, or keeps it until the next flush when outputs are overwritten. Returns the path
  /// under which the output will be written: "_partNNN" is in it where the plain path was taken.
  ///
  /// `confirm`, which may be empty, is asked before anything is handed on. When it says no, nothing
  /// is, and the path returned is empty.
  using Confirm = std::function<bool(const ReservedOutput& output)>;
  QString reserve(const QString& path, int firstPage, int lastPage, const Confirm& confirm = {});

  /// The same of an output that was planned before, under this name or not at all.
  void reserveAs(const ReservedOutput& planned);

  /// Hands on what waits. To be called when a source is finished.
  void flush();

private:
  QString placeFor(const QString& path);
  bool take(const QString& path);
  void hold(const ReservedOutput& output);
  void handOn(const ReservedOutput& output);
  QString unusedPath(const QString& path);
  QString unprotectedPath(const QString& path);
  std::vector<bool> replacedAmong(const std::vector<ReservedOutput>& entries) const;

  WhenTaken m_whenTaken;
  OutputPlaces& m_places;
  OutputList& m_list;
  FileSystemRules m_rules;
  PagePart m_part;
  QSet<QString> m_promised;        ///< comparable paths
  QHash<QString, int> m_lastParts; ///< last part number looked at, by comparable plain path
  std::vector<ReservedOutput> m_pending;
};

} // namespace folivex
