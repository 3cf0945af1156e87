// OleObject: an object of another program on a Windows desktop, reached by the names of its
// operations.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include <windows.h>

#include <oleauto.h>

namespace folivex {

/// Why an operation came to nothing.
struct OleFailure {
  /// What is known of the other program after it.
  enum class Kind {
    Refused, ///< it says no, or cannot do this; nothing was done
    Busy,    ///< it takes no calls just now; nothing was done
    Absent,  ///< it cannot be started; nothing was done
    Lost,    ///< it is gone, and was so before it was asked; nothing was done
    Unknown  ///< it went while it was asked, and may have done it
  };
  Kind kind = Kind::Refused;
  std::wstring text; ///< for a person, never empty
};

/// Keeps this thread able to call other programs. Every OleObject goes before it does.
class OleThread {
public:
  OleThread() = default;
  ~OleThread() {
    if (m_isOurs) {
      CoUninitialize();
    }
  }
  OleThread(const OleThread&) = delete;
  OleThread& operator=(const OleThread&) = delete;

private:
  /// A thread that is in another kind of apartment already is as good.
  bool m_isOurs = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
};

/// A value that goes into a call or comes out of it. Owns the text or the object that it is.
class OleValue {
public:
  OleValue() { VariantInit(&m_variant); }
  explicit OleValue(long number);
  explicit OleValue(const std::wstring& text);
  OleValue(OleValue&& other) noexcept : OleValue() { std::swap(m_variant, other.m_variant); }
  OleValue& operator=(OleValue&& other) noexcept {
    std::swap(m_variant, other.m_variant);
    return *this;
  }
  ~OleValue() { VariantClear(&m_variant); }

  VARIANT& variant() { return m_variant; }

private:
  VARIANT m_variant;
};

/// Every operation throws OleFailure.
class OleObject {
public:
  /// Asked again and again while the other program is busy; false ends the waiting.
  using Patience = std::function<bool()>;

  /// None: whatever is asked of it is refused.
  OleObject() = default;
  /// The program that is registered under `name` ("Outlook.Application"), started if need be.
  OleObject(const wchar_t* name, Patience patience);
  static bool isRegistered(const wchar_t* name);

  explicit operator bool() const { return m_object != nullptr; }

  /// The object that the property is, if it is one.
  OleObject object(const wchar_t* name) const;
  void put(const wchar_t* name, OleValue value) const;
  void call(const wchar_t* name) const;
  /// The object that the method gives, if it gives one.
  OleObject call(const wchar_t* name, OleValue argument) const;

  OleObject(OleObject&& other) noexcept { swap(other); }
  OleObject& operator=(OleObject&& other) noexcept {
    swap(other);
    return *this;
  }
  ~OleObject() {
    if (m_object != nullptr) {
      m_object->Release();
    }
  }

private:
  OleObject(IDispatch* object, Patience patience)
      : m_object(object), m_patience(std::move(patience)) {}
  void swap(OleObject& other) noexcept {
    std::swap(m_object, other.m_object);
    std::swap(m_patience, other.m_patience);
  }
  OleValue invoke(WORD kind, const wchar_t* name, OleValue* argument) const;
  OleObject objectIn(OleValue value) const;
  HRESULT patiently(const std::function<HRESULT()>& call) const;

  IDispatch* m_object = nullptr; ///< counted
  Patience m_patience;
};

} // namespace folivex
