// MailPlace: where the pages of a file have the e-mail address of each document.
#pragma once

#include "engine/suggest/PageSample.h"

#include <optional>
#include <vector>

namespace folivex {

/// Holds an address on the first page of each document, nearly always another one, and no second
/// one there. In points.
struct MailPlace {
  Span h;
  Span v;
};

/// `firstPages`: of the documents, from 0.
std::optional<MailPlace> findMailPlace(const PageSample& sample,
                                       const std::vector<int>& firstPages);

} // namespace folivex
