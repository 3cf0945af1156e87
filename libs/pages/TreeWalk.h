// TreeWalk: the entries of a name or number tree.
#pragma once

#include "ObjGenHash.h"

#include <qpdf/QPDFObjectHandle.hh>

#include <functional>
#include <string>

namespace pages {

/// Visits the key and value pairs of a name tree (leaves: "/Names") or number tree ("/Nums") in
/// order. A node is visited once, however often the file names it.
void walkTree(QPDFObjectHandle root, const std::string& leaves,
              const std::function<void(QPDFObjectHandle key, QPDFObjectHandle value)>& visit);

} // namespace pages
