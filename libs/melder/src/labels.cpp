#include "labels.h"

#include "update.h"

#include <map>
#include <set>

namespace melder {

namespace {

constexpr int kDeepest = 64;

void collect(QPDFObjectHandle node, int depth, std::set<QPDFObjGen>& seen,
             std::map<long long, QPDFObjectHandle>& found) {
  const bool again = node.isIndirect() && !seen.insert(node.getObjGen()).second;
  if (again || !node.isDictionary() || depth > kDeepest) {
    return;
  }
  QPDFObjectHandle kids = node.getKey("/Kids");
  for (int i = 0; kids.isArray() && i < kids.getArrayNItems(); ++i) {
    collect(kids.getArrayItem(i), depth + 1, seen, found);
  }
  QPDFObjectHandle list = node.getKey("/Nums");
  for (int i = 0; list.isArray() && i + 1 < list.getArrayNItems(); i += 2) {
    if (list.getArrayItem(i).isInteger() && list.getArrayItem(i + 1).isDictionary()) {
      found.emplace(list.getArrayItem(i).getIntValue(), list.getArrayItem(i + 1));
    }
  }
}

/** First page (from 0) and dictionary of each run of labels. */
std::map<long long, QPDFObjectHandle> labelsOf(QPDF& pdf) {
  std::map<long long, QPDFObjectHandle> found;
  std::set<QPDFObjGen> seen;
  collect(pdf.getRoot().getKey("/PageLabels"), 0, seen, found);
  return found;
}

} // namespace

Labels::Run Labels::runOf(QPDFObjectHandle label) {
  DictText style;
  for (const char* key : {"/S", "/P"}) {
    if (label.hasKey(key)) {
      style[key] = label.getKey(key).unparseResolved();
    }
  }
  QPDFObjectHandle start = label.getKey("/St");
  return {.style = written(style), .start = start.isInteger() ? start.getIntValue() : 1};
}

std::string Labels::textOf(const Run& run) {
  return run.style.substr(0, run.style.size() - 2) + "/St " + std::to_string(run.start) + ">>";
}

void Labels::read(QPDF& pdf) {
  QPDFObjectHandle root = pdf.getRoot().getKey("/PageLabels");
  const auto all = labelsOf(pdf);
  if (root.isDictionary() && !all.empty()) {
    m_tree.read(root);
    m_lastPage = all.rbegin()->first;
    m_last = runOf(all.rbegin()->second);
  }
}

void Labels::add(int64_t page, const Run& run) {
  const bool goesOn = m_lastPage >= 0 && run.style == m_last.style &&
                      run.start == m_last.start + (page - m_lastPage);
  if (!goesOn) {
    m_tree.insert(SortedTree::numberKey(page), textOf(run));
    m_lastPage = page;
    m_last = run;
  }
}

void Labels::append(Document& part, int before, Update& update, Catalog& catalog) {
  static const std::string kDecimal = written({{"/S", "/D"}});
  const auto runs = labelsOf(part.pdf);
  if (runs.empty() && m_lastPage < 0) {
    return;
  }
  const int64_t lastBefore = m_lastPage;
  if (m_lastPage < 0 && before > 0) {
    add(0, {.style = kDecimal, .start = 1});
  }
  if (runs.empty() || runs.begin()->first > 0) {
    add(before, {.style = kDecimal, .start = before + 1});
  }
  for (const auto& [page, label] : runs) {
    if (page >= 0 && page < static_cast<long long>(part.pages.size())) {
      add(before + page, runOf(label));
    }
  }
  if (m_lastPage != lastBefore) {
    catalog.set("/PageLabels", referenceTo(m_tree.write(update)));
  }
}

} // namespace melder
