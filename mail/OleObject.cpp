#include "mail/OleObject.h"

#include <cwchar>
#include <iterator>
#include <utility>

namespace folivex {

namespace {

std::wstring codeText(HRESULT code) {
  wchar_t text[64] = {};
  swprintf(text, std::size(text), L"it failed with the code 0x%08lX",
           static_cast<unsigned long>(code));
  return text;
}

bool isBusy(HRESULT code) {
  return code == RPC_E_CALL_REJECTED || code == RPC_E_SERVERCALL_RETRYLATER ||
         code == RPC_E_SERVERCALL_REJECTED;
}

/// RPC_S_CALL_FAILED_DNE as such a code: lost, and not begun with.
constexpr auto callNeverCame = static_cast<HRESULT>(0x800706BF);

/// What the road to the other program fails with ([MS-ERREF], RPC_* among the errors of Win32 and
/// of the facility RPC); what the program itself says is none of these.
bool isLoss(HRESULT code) {
  constexpr int firstRpcError = 1700;
  constexpr int lastRpcError = 1999;
  const int facility = HRESULT_FACILITY(code);
  const int number = HRESULT_CODE(code);
  return facility == FACILITY_RPC || code == CO_E_OBJNOTCONNECTED ||
         (facility == FACILITY_WIN32 && number >= firstRpcError && number <= lastRpcError);
}

/// What a call that was refused is told with, and the memory of it.
struct Exception {
  EXCEPINFO info{};
  ~Exception() {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
  std::wstring text(HRESULT code) {
    if (code != DISP_E_EXCEPTION) {
      return codeText(code);
    }
    if (SysStringLen(info.bstrDescription) > 0) {
      return {info.bstrDescription, SysStringLen(info.bstrDescription)};
    }
    return codeText(info.scode != 0 ? info.scode : code);
  }
};

/// `atLoss`: what a program that is gone means.
[[noreturn]] void refuse(HRESULT code, OleFailure::Kind atLoss, const std::wstring& text) {
  if (isBusy(code)) {
    throw OleFailure{OleFailure::Kind::Busy, L"it is busy with something else"};
  }
  if (isLoss(code)) {
    throw OleFailure{atLoss, L"it ended, or stopped answering"};
  }
  throw OleFailure{OleFailure::Kind::Refused, text};
}

} // namespace

OleValue::OleValue(long number) : OleValue() {
  m_variant.vt = VT_I4;
  m_variant.lVal = number;
}

OleValue::OleValue(const std::wstring& text) : OleValue() {
  m_variant.vt = VT_BSTR;
  m_variant.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (m_variant.bstrVal == nullptr) { // which would be an empty text
    throw OleFailure{OleFailure::Kind::Refused, L"there is not enough memory"};
  }
}

bool OleObject::isRegistered(const wchar_t* name) {
  CLSID id{};
  return SUCCEEDED(CLSIDFromProgID(name, &id));
}

OleObject::OleObject(const wchar_t* name, Patience patience) : m_patience(std::move(patience)) {
  CLSID id{};
  void* object = nullptr;
  HRESULT code = CLSIDFromProgID(name, &id);
  if (SUCCEEDED(code)) {
    code = patiently(
        [&] { return CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch, &object); });
  }
  if (FAILED(code)) {
    throw OleFailure{isBusy(code) ? OleFailure::Kind::Busy : OleFailure::Kind::Absent,
                     codeText(code)};
  }
  m_object = static_cast<IDispatch*>(object);
}

OleObject OleObject::object(const wchar_t* name) const {
  return objectIn(invoke(DISPATCH_PROPERTYGET, name, nullptr));
}

void OleObject::put(const wchar_t* name, OleValue value) const {
  invoke(DISPATCH_PROPERTYPUT, name, &value);
}

void OleObject::call(const wchar_t* name) const {
  invoke(DISPATCH_METHOD, name, nullptr);
}

OleObject OleObject::call(const wchar_t* name, OleValue argument) const {
  return objectIn(invoke(DISPATCH_METHOD, name, &argument));
}

OleValue OleObject::invoke(WORD kind, const wchar_t* name, OleValue* argument) const {
  if (m_object == nullptr) {
    throw OleFailure{OleFailure::Kind::Refused,
                     L"there is nothing to ask for \"" + std::wstring(name) + L"\""};
  }
  auto* wide = const_cast<LPOLESTR>(name); // which is only read
  DISPID id = 0;
  HRESULT code = patiently(
      [&] { return m_object->GetIDsOfNames(IID_NULL, &wide, 1, LOCALE_USER_DEFAULT, &id); });
  if (FAILED(code)) {
    refuse(code, OleFailure::Kind::Lost, L"it does not know \"" + std::wstring(name) + L"\"");
  }
  const bool puts = kind == DISPATCH_PROPERTYPUT;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{argument != nullptr ? &argument->variant() : nullptr, puts ? &put : nullptr,
                        argument != nullptr ? 1U : 0U, puts ? 1U : 0U};
  OleValue result;
  Exception exception;
  code = patiently([&] {
    return m_object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                            puts ? nullptr : &result.variant(), &exception.info, nullptr);
  });
  if (FAILED(code)) {
    const bool neverCame = code == RPC_E_SERVER_DIED_DNE || code == callNeverCame;
    refuse(code, neverCame ? OleFailure::Kind::Lost : OleFailure::Kind::Unknown,
           exception.text(code));
  }
  return result;
}

OleObject OleObject::objectIn(OleValue value) const {
  VARIANT& variant = value.variant();
  if (variant.vt != VT_DISPATCH) {
    return {};
  }
  variant.vt = VT_EMPTY; // handed on
  return {variant.pdispVal, m_patience};
}

HRESULT OleObject::patiently(const std::function<HRESULT()>& call) const {
  constexpr DWORD pause = 50; // milliseconds
  HRESULT code = call();
  while (isBusy(code) && m_patience && m_patience()) {
    Sleep(pause);
    code = call();
  }
  return code;
}

} // namespace folivex
