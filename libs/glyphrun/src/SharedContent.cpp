#include "SharedContent.h"

namespace glyphrun {

bool LayerVisibility::hides(const PdfObject& content) {
  if (!content.isDict()) {
    return false;
  }
  const int number = content.objectNumber();
  if (number != 0) {
    const auto known = m_known.find(number);
    if (known != m_known.end()) {
      return known->second;
    }
  }
  int hidden = 0;
  m_mu.attempt(
      [&] { hidden = pdf_is_ocg_hidden(m_mu.raw(), m_document, nullptr, "View", content.raw()); });
  if (number != 0) {
    m_known[number] = hidden != 0;
  }
  return hidden != 0;
}

std::shared_ptr<FormCache::Form> FormCache::find(const PdfObject& stream, std::size_t limit) {
  constexpr std::size_t mostBytes = std::size_t{8} << 20;
  const int number = stream.objectNumber();
  const auto known = m_forms.find(number);
  if (number != 0 && known != m_forms.end()) {
    return known->second;
  }
  auto form = std::make_shared<Form>();
  if (!m_streams.append(stream, limit, form->data)) {
    return nullptr;
  }
  const std::size_t size = form->data.bytes.size();
  if (number == 0 || form->data.cut || size > mostBytes / 4) {
    return form;
  }
  if (m_bytes + size > mostBytes) {
    m_forms.clear();
    m_bytes = 0;
  }
  form->data.bytes.shrink_to_fit();
  m_bytes += size + sizeof(Form);
  m_forms[number] = form;
  return form;
}

} // namespace glyphrun
