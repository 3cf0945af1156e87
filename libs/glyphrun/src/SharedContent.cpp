#include "SharedContent.h"

namespace glyphrun {

bool LayerVisibility::hides(const PdfObject& content) {
  if (!content.isDict())
    return false;
  const int number = content.objectNumber();
  if (number != 0) {
    const auto known = known_.find(number);
    if (known != known_.end())
      return known->second;
  }
  int hidden = 0;
  mu_.attempt(
      [&] { hidden = pdf_is_ocg_hidden(mu_.raw(), document_, nullptr, "View", content.raw()); });
  if (number != 0)
    known_[number] = hidden != 0;
  return hidden != 0;
}

std::shared_ptr<FormCache::Form> FormCache::find(const PdfObject& stream, std::size_t limit) {
  constexpr std::size_t mostBytes = std::size_t{8} << 20;
  const int number = stream.objectNumber();
  const auto known = forms_.find(number);
  if (number != 0 && known != forms_.end())
    return known->second;
  auto form = std::make_shared<Form>();
  if (!streams_.append(stream, limit, form->data))
    return nullptr;
  const std::size_t size = form->data.bytes.size();
  if (number == 0 || form->data.cut || size > mostBytes / 4)
    return form;
  if (bytes_ + size > mostBytes) {
    forms_.clear();
    bytes_ = 0;
  }
  form->data.bytes.shrink_to_fit();
  bytes_ += size + sizeof(Form);
  forms_[number] = form;
  return form;
}

} // namespace glyphrun
