// UniqueOutputs: ranges that grow are written once.
#pragma once

#include "engine/naming/OutputReservation.h"

#include <optional>

namespace folivex {

/// Stands before the writer in the methods that merge consecutive ranges of the same text. There
/// each further match saves the range again, from the same first page and under the same path, with
/// more pages. Only the last of them is handed on, when the next range shows that it is complete;
/// else the pages written would grow with the square of the matches.
class UniqueOutputs : public OutputList {
public:
  /// `next` must outlive this.
  explicit UniqueOutputs(OutputList& next) : m_next(next) {}

  void output(const ReservedOutput& reserved) override;
  void replaced(const ReservedOutput& lost) override;

  /// Hands on what is held. To be called at the end of a source.
  void release();

private:
  OutputList& m_next;
  std::optional<ReservedOutput> m_held;
};

} // namespace folivex
