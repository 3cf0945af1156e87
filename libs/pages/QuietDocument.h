// QuietDocument: a parser that prints nothing.
#pragma once

#include <qpdf/QPDF.hh>

#include <memory>

namespace pages {

/// An empty document, ready to be given a file. What the parser finds wrong it only keeps.
[[nodiscard]] std::shared_ptr<QPDF> quietDocument();

/// Whether the file's table of objects was of no use, so that it was searched for them. Lets go of
/// what the parser kept.
[[nodiscard]] bool isRepaired(QPDF& document);

} // namespace pages
