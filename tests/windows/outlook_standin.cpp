// A mail program for tests: it takes the place of "Outlook.Application" and speaks the few calls
// that mails are handed over with, by their names alone.
//
//   outlook_standin --register FOLDER     from now on it is what is started; --unregister ends that
//
// FOLDER/NUMBER holds a mail that was begun: "fields" (NAME=VALUE lines, in UTF-8, CR and LF as \r
// and \n), the attachments as "attached-NUMBER-NAME" with their bytes as they were when they were
// added, and "fate", which is "sent" or "shown" once it is. FOLDER/orders, which is read at every
// call, has lines "METHOD ORDER [MAIL]": what it does when METHOD is called, for the mail with that
// number alone or for each:
//
//   refuse    says no, with a sentence
//   silent    the same without a sentence
//   busy      turns the call away; FOLDER/turned-away counts how often, and three times are enough
//   always-busy
//   die       ends before anything is done
//   done-die  ends when it is done
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <windows.h>

#include <oleauto.h>

namespace {

namespace fs = std::filesystem;

// {5C1B7E0A-6D4E-4C0F-9D53-2B0E7A4F1D11}
constexpr CLSID ownClass = {
    0x5C1B7E0A, 0x6D4E, 0x4C0F, {0x9D, 0x53, 0x2B, 0x0E, 0x7A, 0x4F, 0x1D, 0x11}};
constexpr auto className = L"{5C1B7E0A-6D4E-4C0F-9D53-2B0E7A4F1D11}";
const std::wstring classesKey = L"Software\\Classes\\";
const std::wstring classKey = classesKey + L"CLSID\\" + className;
constexpr auto ownKey = L"Software\\Folivex tests\\Outlook";
const std::wstring nameKey = classesKey + L"Outlook.Application";

fs::path mailFolder;
std::atomic<long> objects = 0; ///< the program ends with the last one
int mails = 0;

std::string utf8(const wchar_t* text, int length) {
  std::string bytes(static_cast<std::size_t>(length) * 3, '\0');
  bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(
      CP_UTF8, 0, text, length, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

/// On one line.
std::string fieldText(const VARIANT& value) {
  if (value.vt == VT_I4) {
    return std::to_string(value.lVal);
  }
  std::string text;
  for (const char c : utf8(value.bstrVal, static_cast<int>(SysStringLen(value.bstrVal)))) {
    text += c == '\r' ? "\\r" : c == '\n' ? "\\n" : c == '\\' ? "\\\\" : std::string(1, c);
  }
  return text;
}

void append(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary | std::ios::app) << text;
}

/// What FOLDER/orders says of a method, empty when nothing.
std::string orderFor(const std::string& method, int mail) {
  std::ifstream orders(mailFolder / "orders");
  for (std::string line; std::getline(orders, line);) {
    std::istringstream words(line);
    std::string named;
    std::string order;
    int number = mail;
    words >> named >> order >> number;
    if (named == method && number == mail) {
      return order;
    }
  }
  return {};
}

HRESULT refuse(EXCEPINFO* failure, const wchar_t* sentence) {
  if (failure != nullptr) {
    *failure = {};
    failure->scode = E_ABORT;
    failure->bstrDescription = SysAllocString(sentence);
  }
  return DISP_E_EXCEPTION;
}

bool isTurnedAway() {
  const fs::path count = mailFolder / "turned-away";
  std::error_code ignored;
  constexpr std::uintmax_t enough = 3;
  if (fs::exists(count) && fs::file_size(count, ignored) >= enough) {
    return false;
  }
  append(count, "x");
  return true;
}

/// An object by its names. A method or property takes at most one value.
class Object : public IDispatch {
public:
  struct Call {
    WORD kind;
    const VARIANT* argument; ///< null: none
    VARIANT* result;         ///< may be null
  };

  explicit Object(int mail) : m_mail(mail) { ++objects; }
  virtual ~Object() {
    if (--objects == 0) {
      PostQuitMessage(0);
    }
  }

  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_count; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --m_count;
    if (left == 0) {
      delete this;
    }
    return left;
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = id == IID_IUnknown || id == IID_IDispatch ? this : nullptr;
    if (*object == nullptr) {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    const std::vector<std::wstring> known = operations();
    for (std::size_t i = 0; count == 1 && i < known.size(); ++i) {
      if (_wcsicmp(known[i].c_str(), names[0]) == 0) {
        ids[0] = static_cast<DISPID>(i + 1);
        return S_OK;
      }
    }
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* failure, UINT*) override {
    const std::vector<std::wstring> known = operations();
    if (id < 1 || static_cast<std::size_t>(id) > known.size()) {
      return DISP_E_MEMBERNOTFOUND;
    }
    const bool puts = kind == DISPATCH_PROPERTYPUT;
    const bool isNamed =
        parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    if (parameters->cArgs > 1 || puts != isNamed || (puts && parameters->cArgs != 1)) {
      return DISP_E_BADPARAMCOUNT;
    }
    const std::wstring& name = known[static_cast<std::size_t>(id) - 1];
    const std::string order = orderFor(utf8(name.data(), static_cast<int>(name.size())), m_mail);
    if (order == "refuse" || order == "silent") {
      return refuse(failure, order == "refuse" ? L"The stand-in says no." : nullptr);
    }
    if (order == "always-busy" || (order == "busy" && isTurnedAway())) {
      return RPC_E_CALL_REJECTED;
    }
    if (order == "die") {
      std::_Exit(1);
    }
    const HRESULT done =
        call(name, {kind, parameters->cArgs == 1 ? &parameters->rgvarg[0] : nullptr, result});
    if (order == "done-die") {
      std::_Exit(1);
    }
    return done;
  }

protected:
  virtual std::vector<std::wstring> operations() const = 0;
  virtual HRESULT call(const std::wstring& name, const Call& call) = 0;

  static HRESULT give(const Call& call, Object* object) {
    if (call.result == nullptr) {
      object->Release();
      return S_OK;
    }
    call.result->vt = VT_DISPATCH;
    call.result->pdispVal = object;
    return S_OK;
  }
  int mail() const { return m_mail; }
  fs::path folder() const { return mailFolder / std::to_string(m_mail); }

private:
  int m_mail; ///< from 1; 0: of none
  std::atomic<ULONG> m_count = 1;
};

class Attachment : public Object {
public:
  using Object::Object;
  std::vector<std::wstring> operations() const override { return {}; }

protected:
  HRESULT call(const std::wstring&, const Call&) override { return DISP_E_MEMBERNOTFOUND; }
};

class Attachments : public Object {
public:
  using Object::Object;
  std::vector<std::wstring> operations() const override { return {L"Add"}; }

protected:
  HRESULT call(const std::wstring&, const Call& call) override {
    if (call.kind != DISPATCH_METHOD || call.argument == nullptr || call.argument->vt != VT_BSTR) {
      return DISP_E_TYPEMISMATCH;
    }
    const fs::path file = call.argument->bstrVal;
    const std::wstring name =
        L"attached-" + std::to_wstring(++m_number) + L"-" + file.filename().wstring();
    std::error_code error;
    // A path without its drive would be looked for in a folder of nobody's choice.
    const bool isCopied =
        file.is_absolute() && fs::copy_file(file, folder() / name, error) && !error;
    return isCopied ? give(call, new Attachment(mail())) : E_FAIL;
  }

private:
  int m_number = 0;
};

class Mail : public Object {
public:
  Mail() : Object(++mails) { fs::create_directory(folder()); }
  std::vector<std::wstring> operations() const override {
    return {L"To",         L"CC",          L"Subject", L"Body",   L"HTMLBody",
            L"BodyFormat", L"Attachments", L"Send",    L"Display"};
  }

protected:
  HRESULT call(const std::wstring& name, const Call& call) override {
    if (m_isSent) {
      return E_FAIL; // it has moved
    }
    if (name == L"Attachments") {
      return call.kind == DISPATCH_METHOD ? DISP_E_MEMBERNOTFOUND
                                          : give(call, new Attachments(mail()));
    }
    if (name == L"Send" || name == L"Display") {
      if (call.kind != DISPATCH_METHOD || call.argument != nullptr) {
        return DISP_E_MEMBERNOTFOUND;
      }
      m_isSent = name == L"Send";
      append(folder() / "fate", m_isSent ? "sent\n" : "shown\n");
      return S_OK;
    }
    const VARTYPE wanted = name == L"BodyFormat" ? VT_I4 : VT_BSTR;
    if (call.kind != DISPATCH_PROPERTYPUT || call.argument->vt != wanted) {
      return DISP_E_TYPEMISMATCH;
    }
    append(folder() / "fields", utf8(name.data(), static_cast<int>(name.size())) + '=' +
                                    fieldText(*call.argument) + '\n');
    return S_OK;
  }

private:
  bool m_isSent = false;
};

class Application : public Object {
public:
  Application() : Object(0) {}
  std::vector<std::wstring> operations() const override { return {L"CreateItem"}; }

protected:
  HRESULT call(const std::wstring&, const Call& call) override {
    const bool isMail = call.kind == DISPATCH_METHOD && call.argument != nullptr &&
                        call.argument->vt == VT_I4 && call.argument->lVal == 0;
    return isMail ? give(call, new Mail) : DISP_E_TYPEMISMATCH;
  }
};

class Factory : public IClassFactory {
public:
  virtual ~Factory() = default;
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; } // lives as long as the program
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
    return *object != nullptr ? S_OK : E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
    if (outer != nullptr) {
      return CLASS_E_NOAGGREGATION;
    }
    auto* const application = new Application;
    const HRESULT result = application->QueryInterface(id, object);
    application->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

/// For all users where that is allowed (Wine looks nowhere else), else for this one.
const HKEY registries[] = {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};

bool write(HKEY registry, const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  return RegSetKeyValueW(registry, key.c_str(), name, REG_SZ, text.c_str(),
                         static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool registerFor(const std::wstring& folder) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  return std::ranges::any_of(registries, [&](HKEY registry) {
    return write(registry, nameKey + L"\\CLSID", nullptr, className) &&
           write(registry, classKey + L"\\LocalServer32", nullptr,
                 L'"' + std::wstring(program) + L'"') &&
           write(HKEY_CURRENT_USER, ownKey, L"Folder", folder);
  });
}

void unregister() {
  for (const HKEY registry : registries) {
    RegDeleteTreeW(registry, nameKey.c_str());
    RegDeleteTreeW(registry, classKey.c_str());
  }
  RegDeleteTreeW(HKEY_CURRENT_USER, ownKey);
}

int serve() {
  wchar_t folder[MAX_PATH] = {};
  DWORD bytes = sizeof folder;
  if (RegGetValueW(HKEY_CURRENT_USER, ownKey, L"Folder", RRF_RT_REG_SZ, nullptr, folder, &bytes) !=
      ERROR_SUCCESS) {
    return 1;
  }
  mailFolder = folder;
  while (fs::exists(mailFolder / std::to_string(mails + 1))) {
    ++mails; // of one that died
  }
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  static Factory factory;
  DWORD cookie = 0;
  if (FAILED(CoRegisterClassObject(ownClass, &factory, CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE,
                                   &cookie))) {
    return 1;
  }
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    DispatchMessageW(&message);
  }
  CoRevokeClassObject(cookie);
  CoUninitialize();
  return 0;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc == 3 && std::wstring(argv[1]) == L"--register") {
    return registerFor(argv[2]) ? 0 : 1;
  }
  if (argc == 2 && std::wstring(argv[1]) == L"--unregister") {
    unregister();
    return 0;
  }
  return serve();
}
