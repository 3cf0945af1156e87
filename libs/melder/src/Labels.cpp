#include "Joining.h"

#include "pages/PageLabels.h"

namespace melder {

void joinLabels(Joining& joining) {
  using pages::PageLabels;
  const int32_t before = joining.receiver.pageCount();
  auto sections = PageLabels(joining.receiver.catalog()).within({{0, before - 1}});
  auto added =
      PageLabels(joining.part.catalog()).within({{0, joining.part.pageCount() - 1}}, before);
  if (sections.empty() && added.empty()) {
    return;
  }
  if (sections.empty() && before > 0) {
    sections.push_back(PageLabels::byPlace(0));
  }
  if (added.empty()) {
    added.push_back(PageLabels::byPlace(before));
  }
  std::vector<QPDFObjectHandle> entries;
  for (const auto& [page, label] : sections) {
    entries.push_back(QPDFObjectHandle::newInteger(page));
    entries.push_back(label);
  }
  for (const auto& [page, label] : added) {
    entries.push_back(QPDFObjectHandle::newInteger(page));
    entries.push_back(joining.transplant.value(label));
  }
  joining.setTree(joining.receiver.catalog(), "/PageLabels", "/Nums", entries);
}

} // namespace melder
