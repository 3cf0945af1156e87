// ObjGenHash: tables by object of a file.
#pragma once

#include <qpdf/QPDFObjGen.hh>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

namespace pages {

/// Object numbers of a file are dense and distinct, but a hostile file may choose its own.
struct ObjGenHash {
  size_t operator()(const QPDFObjGen& object) const {
    const auto key = (static_cast<uint64_t>(static_cast<uint32_t>(object.getObj())) << 17) ^
                     static_cast<uint32_t>(object.getGen());
    return static_cast<size_t>((key * 0x9E3779B97F4A7C15ULL) >> 16);
  }
};

template <typename Value> using ObjGenMap = std::unordered_map<QPDFObjGen, Value, ObjGenHash>;
using ObjGenSet = std::unordered_set<QPDFObjGen, ObjGenHash>;

} // namespace pages
