#include "mail/MailMessage.h"
#include "mail/OutlookMail.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

#include <windows.h>

#include <oleauto.h>

namespace folivex {

namespace {

/// A text of the automation interface.
class Text {
public:
  explicit Text(const QString& text)
      : m_text(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()),
                                 static_cast<UINT>(text.size()))) {}
  ~Text() { SysFreeString(m_text); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  BSTR get() const { return m_text; }

private:
  BSTR m_text;
};

VARIANT number(long value) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_I4;
  variant.lVal = value;
  return variant;
}

/// Borrows the text.
VARIANT text(const Text& value) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_BSTR;
  variant.bstrVal = value.get();
  return variant;
}

/// One object of the automation interface, owned.
class Automated {
public:
  Automated() = default;
  explicit Automated(IDispatch* object) : m_object(object) {}
  ~Automated() {
    if (m_object) {
      m_object->Release();
    }
  }
  Automated(Automated&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  Automated& operator=(Automated&& other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  explicit operator bool() const { return m_object != nullptr; }

  bool set(const wchar_t* name, VARIANT value) {
    return invoke(name, DISPATCH_PROPERTYPUT, &value, nullptr);
  }
  bool call(const wchar_t* name) { return invoke(name, DISPATCH_METHOD, nullptr, nullptr); }
  Automated callWith(const wchar_t* name, VARIANT argument) {
    return objectOf(name, DISPATCH_METHOD, &argument);
  }
  Automated member(const wchar_t* name) { return objectOf(name, DISPATCH_PROPERTYGET, nullptr); }
  QString errorText() const { return m_errorText; }

private:
  Automated objectOf(const wchar_t* name, WORD kind, VARIANT* argument) {
    VARIANT result;
    VariantInit(&result);
    if (!invoke(name, kind, argument, &result)) {
      return {};
    }
    if (result.vt != VT_DISPATCH) {
      VariantClear(&result);
      return {};
    }
    return Automated(result.pdispVal);
  }

  bool invoke(const wchar_t* name, WORD kind, VARIANT* argument, VARIANT* result) {
    DISPID id = 0;
    auto* wide = const_cast<LPOLESTR>(name);
    if (!m_object ||
        FAILED(m_object->GetIDsOfNames(IID_NULL, &wide, 1, LOCALE_USER_DEFAULT, &id))) {
      m_errorText =
          QStringLiteral("Outlook does not know \"%1\"").arg(QString::fromWCharArray(name));
      return false;
    }
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{argument, nullptr, argument ? 1U : 0U, 0};
    if (kind == DISPATCH_PROPERTYPUT) {
      parameters.rgdispidNamedArgs = &put;
      parameters.cNamedArgs = 1;
    }
    EXCEPINFO failure{};
    const HRESULT code = m_object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                          result, &failure, nullptr);
    if (FAILED(code)) {
      m_errorText = failure.bstrDescription
                        ? QString::fromWCharArray(failure.bstrDescription)
                        : QStringLiteral("Outlook failed with the code 0x%1")
                              .arg(static_cast<quint32>(code), 8, 16, QLatin1Char('0'));
    }
    SysFreeString(failure.bstrSource);
    SysFreeString(failure.bstrDescription);
    SysFreeString(failure.bstrHelpFile);
    return SUCCEEDED(code);
  }

  IDispatch* m_object = nullptr;
  QString m_errorText;
};

bool findOutlook(CLSID& id) {
  return SUCCEEDED(CLSIDFromProgID(L"Outlook.Application", &id));
}

class COutlookMail : public MailTransport {
public:
  explicit COutlookMail(OutlookMode mode)
      : m_mode(mode), m_initialised(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~COutlookMail() override {
    m_outlook = {};
    if (m_initialised) {
      CoUninitialize();
    }
  }
  COutlookMail(const COutlookMail&) = delete;
  COutlookMail& operator=(const COutlookMail&) = delete;

  MailResult send(const MailMessage& message, MailWait& wait) override {
    wait.handlePendingEvents();
    MailMessage checked = message;
    checked.sender = message.recipient; // Outlook has its own
    const QString problem = messageProblem(checked);
    if (!problem.isEmpty()) {
      return failed(problem);
    }
    if (!connect()) {
      return failed(QStringLiteral("Outlook cannot be started"));
    }
    constexpr long mailItem = 0;
    Automated mail = m_outlook.callWith(L"CreateItem", number(mailItem));
    if (!mail) {
      return failed(m_outlook.errorText());
    }
    return fill(mail, message) && mail.call(m_mode == OutlookMode::Send ? L"Send" : L"Display")
               ? sent()
               : failed(mail.errorText());
  }

private:
  static MailResult sent() {
    MailResult result;
    result.outcome = MailOutcome::Sent;
    return result;
  }
  static MailResult failed(const QString& text) {
    MailResult result;
    result.errorText = text.isEmpty() ? QStringLiteral("Outlook did not take the mail") : text;
    return result;
  }

  bool connect() {
    CLSID id{};
    IDispatch* object = nullptr;
    if (!m_outlook && findOutlook(id) &&
        SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                   reinterpret_cast<void**>(&object)))) {
      m_outlook = Automated(object);
    }
    return static_cast<bool>(m_outlook);
  }

  static bool fill(Automated& mail, const MailMessage& message) {
    const bool html = message.bodyKind == BodyKind::Html;
    if (!mail.set(L"To", text(Text(message.recipient))) ||
        !mail.set(L"CC", text(Text(copyAddresses(message.cc).join(u';')))) ||
        !mail.set(L"Subject", text(Text(message.subject))) ||
        !mail.set(html ? L"HTMLBody" : L"Body", text(Text(message.body)))) {
      return false;
    }
    if (message.attachmentPath.isEmpty()) {
      return true;
    }
    const QString path =
        QDir::toNativeSeparators(QFileInfo(message.attachmentPath).absoluteFilePath());
    Automated attachments = mail.member(L"Attachments");
    return attachments && attachments.callWith(L"Add", text(Text(path)));
  }

  OutlookMode m_mode;
  bool m_initialised;
  Automated m_outlook;
};

} // namespace

OutlookAvailability outlookAvailable() {
  CLSID id{};
  return findOutlook(id) ? OutlookAvailability{true, {}}
                         : OutlookAvailability{
                               false, QStringLiteral("Outlook is not installed on this machine: "
                                                     "give an SMTP server instead.")};
}

std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode mode) {
  return outlookAvailable().available ? std::make_unique<COutlookMail>(mode) : nullptr;
}

} // namespace folivex
