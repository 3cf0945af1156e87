#include "TreeWalk.h"

#include <vector>

namespace pages {

void walkTree(QPDFObjectHandle root, const std::string& leaves,
              const std::function<void(QPDFObjectHandle key, QPDFObjectHandle value)>& visit) {
  ObjGenSet seen;
  std::vector<QPDFObjectHandle> waiting{root};
  while (!waiting.empty()) {
    QPDFObjectHandle node = waiting.back();
    waiting.pop_back();
    if (!node.isDictionary() || (node.isIndirect() && !seen.insert(node.getObjGen()).second)) {
      continue;
    }
    QPDFObjectHandle pairs = node.getKey(leaves);
    const int count = pairs.isArray() ? pairs.getArrayNItems() : 0;
    for (int i = 0; i + 1 < count; i += 2) {
      visit(pairs.getArrayItem(i), pairs.getArrayItem(i + 1));
    }
    QPDFObjectHandle kids = node.getKey("/Kids");
    // Taken from the back, so the first kid is put there last.
    for (int i = kids.isArray() ? kids.getArrayNItems() : 0; i > 0; --i) {
      waiting.push_back(kids.getArrayItem(i - 1));
    }
  }
}

} // namespace pages
