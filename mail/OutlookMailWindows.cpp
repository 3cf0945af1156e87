#include "mail/OutlookMail.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

#include <windows.h>

#include <oleauto.h>

namespace folivex {

namespace {

/// A value of the automation interface. Owns the text or the object that it is.
class Value {
public:
  Value() { VariantInit(&m_variant); }
  explicit Value(long number) : Value() {
    m_variant.vt = VT_I4;
    m_variant.lVal = number;
  }
  explicit Value(const QString& text) : Value() {
    m_variant.vt = VT_BSTR;
    m_variant.bstrVal = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()),
                                          static_cast<UINT>(text.size()));
  }
  explicit Value(IDispatch* object) : Value() {
    m_variant.vt = VT_DISPATCH;
    m_variant.pdispVal = object;
  }
  Value(Value&& other) noexcept : Value() { std::swap(m_variant, other.m_variant); }
  Value& operator=(Value&& other) noexcept {
    std::swap(m_variant, other.m_variant);
    return *this;
  }
  ~Value() { VariantClear(&m_variant); }

  bool isEmpty() const { return m_variant.vt == VT_EMPTY; }
  IDispatch* object() const { return m_variant.vt == VT_DISPATCH ? m_variant.pdispVal : nullptr; }
  VARIANT* variant() { return &m_variant; }

private:
  VARIANT m_variant;
};

/// Why Outlook does not do something, for a person.
struct Failure {
  QString text;
};

/// What a method or a property of `object` gives; throws Failure.
Value invoke(const Value& object, WORD kind, const wchar_t* name, Value argument = Value()) {
  IDispatch* const target = object.object();
  auto* wide = const_cast<LPOLESTR>(name);
  DISPID id = 0;
  if (!target || FAILED(target->GetIDsOfNames(IID_NULL, &wide, 1, LOCALE_USER_DEFAULT, &id))) {
    throw Failure{
        QStringLiteral("Outlook does not know \"%1\"").arg(QString::fromWCharArray(name))};
  }
  const bool puts = kind == DISPATCH_PROPERTYPUT;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{argument.variant(), puts ? &put : nullptr, argument.isEmpty() ? 0U : 1U,
                        puts ? 1U : 0U};
  Value result;
  EXCEPINFO failure{};
  const HRESULT code = target->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                      puts ? nullptr : result.variant(), &failure, nullptr);
  const QString reason =
      failure.bstrDescription ? QString::fromWCharArray(failure.bstrDescription) : QString();
  SysFreeString(failure.bstrSource);
  SysFreeString(failure.bstrDescription);
  SysFreeString(failure.bstrHelpFile);
  if (FAILED(code)) {
    throw Failure{reason.isEmpty() ? QStringLiteral("Outlook failed with the code 0x%1")
                                         .arg(static_cast<quint32>(code), 8, 16, QLatin1Char('0'))
                                   : reason};
  }
  return result;
}

void put(const Value& object, const wchar_t* name, const QString& text) {
  invoke(object, DISPATCH_PROPERTYPUT, name, Value(text));
}

bool findOutlook(CLSID& id) {
  return SUCCEEDED(CLSIDFromProgID(L"Outlook.Application", &id));
}

/// The automation interface on this thread.
struct Automation {
  Automation() = default;
  Automation(const Automation&) = delete;
  Automation& operator=(const Automation&) = delete;
  ~Automation() {
    if (initialised) {
      CoUninitialize();
    }
  }
  bool initialised = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
};

class COutlookMail : public MailTransport {
public:
  explicit COutlookMail(OutlookMode mode) : m_mode(mode) {}

  MailResult send(const MailMessage& message, MailWait& wait) override {
    wait.handlePendingEvents();
    MailMessage checked = message;
    checked.sender = message.recipient; // Outlook has its own
    MailResult result;
    result.errorText = messageProblem(checked);
    if (result.errorText.isEmpty()) {
      try {
        result.outcome = handOver(message) ? MailOutcome::Sent : MailOutcome::FileChanged;
        if (!result.sent()) {
          result.errorText = QStringLiteral("the file %1 has changed since it was written: it is "
                                            "not sent unless a person accepts it in the list")
                                 .arg(message.attachmentPath);
        }
      } catch (const Failure& failure) {
        result.errorText = failure.text;
      }
    }
    return result;
  }

private:
  void start() {
    CLSID id{};
    void* object = nullptr;
    if (!findOutlook(id) ||
        FAILED(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch, &object))) {
      throw Failure{QStringLiteral("Outlook cannot be started")};
    }
    m_outlook = Value(static_cast<IDispatch*>(object));
  }

  /// False when the file is not the one that was meant.
  bool handOver(const MailMessage& message) {
    if (m_outlook.isEmpty()) {
      start();
    }
    constexpr long mailItem = 0;
    const Value mail = invoke(m_outlook, DISPATCH_METHOD, L"CreateItem", Value(mailItem));
    put(mail, L"To", message.recipient);
    put(mail, L"CC", copyAddresses(message.cc).join(u';'));
    put(mail, L"Subject", message.subject);
    put(mail, message.bodyKind == BodyKind::Html ? L"HTMLBody" : L"Body", message.body);
    if (!message.attachmentPath.isEmpty()) {
      const QFileInfo file(message.attachmentPath);
      invoke(invoke(mail, DISPATCH_PROPERTYGET, L"Attachments"), DISPATCH_METHOD, L"Add",
             Value(QDir::toNativeSeparators(file.absoluteFilePath())));
      // Outlook has a copy of its own by now.
      if (message.attachmentIdentity.isKnown() &&
          platform::FileDigest::of(message.attachmentPath) != message.attachmentIdentity) {
        return false;
      }
    }
    invoke(mail, DISPATCH_METHOD, m_mode == OutlookMode::Send ? L"Send" : L"Display");
    return true;
  }

  OutlookMode m_mode;
  Automation m_automation;
  Value m_outlook; ///< gone before the automation interface is
};

} // namespace

QString outlookProblem() {
  CLSID id{};
  return findOutlook(id) ? QString()
                         : QStringLiteral("Outlook is not installed on this machine: give an SMTP "
                                          "server instead.");
}

std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode mode) {
  return std::make_unique<COutlookMail>(mode);
}

} // namespace folivex
