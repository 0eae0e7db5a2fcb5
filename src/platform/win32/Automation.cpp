#include "platform/win32/Automation.h"

#include "platform/win32/WideText.h"

#include <new>

namespace {

Text HexText(HRESULT result)
{
    Text text;
    for (int shift = 28; shift >= 0; shift -= 4)
        text += u"0123456789ABCDEF"[(static_cast<std::uint32_t>(result) >> shift) & 15];
    return text;
}

[[noreturn]] void Fail(const Text& member, HRESULT result)
{
    throw DatabaseError(u"The database engine failed at " + member + u" (error " + HexText(result) + u")");
}

// What an object says of a failed call.
class ExceptionInfo {
public:
    ~ExceptionInfo()
    {
        SysFreeString(info_.bstrSource);
        SysFreeString(info_.bstrDescription);
        SysFreeString(info_.bstrHelpFile);
    }

    EXCEPINFO* Address() { return &info_; }

    [[noreturn]] void Throw(const Text& member)
    {
        if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
        Text words = info_.bstrDescription
                         ? FromWide(info_.bstrDescription, SysStringLen(info_.bstrDescription))
                         : Text{};
        words.resize(words.find_last_not_of(u". \r\n") + 1); // npos + 1 is 0: nothing else in it
        if (words.empty()) Fail(member, info_.scode ? info_.scode : static_cast<HRESULT>(info_.wCode));
        throw DatabaseError(words);
    }

private:
    EXCEPINFO info_{};
};

} // namespace

Variant::Variant(TextView text) : Variant()
{
    value_.bstrVal =
        SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()), static_cast<UINT>(text.size()));
    if (!value_.bstrVal) throw std::bad_alloc();
    value_.vt = VT_BSTR;
}

Variant::Variant(std::int32_t number) : Variant()
{
    value_.vt = VT_I4;
    value_.lVal = number;
}

Variant Variant::Missing()
{
    Variant missing;
    missing.value_.vt = VT_ERROR;
    missing.value_.scode = DISP_E_PARAMNOTFOUND;
    return missing;
}

Variant Variant::Null()
{
    Variant null;
    null.value_.vt = VT_NULL;
    return null;
}

Text Variant::ToText() const
{
    if (value_.vt == VT_NULL || value_.vt == VT_EMPTY) return {};
    Variant converted;
    const VARIANT* text = &value_;
    if (value_.vt != VT_BSTR) {
        const HRESULT result =
            VariantChangeType(&converted.value_, const_cast<VARIANT*>(&value_), 0, VT_BSTR);
        if (FAILED(result)) Fail(u"a value", result);
        text = &converted.value_;
    }
    return text->bstrVal ? FromWide(text->bstrVal, SysStringLen(text->bstrVal)) : Text{};
}

bool Variant::ToBool() const
{
    Variant converted;
    const HRESULT result = VariantChangeType(&converted.value_, const_cast<VARIANT*>(&value_), 0, VT_BOOL);
    if (FAILED(result)) Fail(u"a value", result);
    return converted.value_.boolVal != VARIANT_FALSE;
}

std::int32_t Variant::ToNumber() const
{
    Variant converted;
    const HRESULT result = VariantChangeType(&converted.value_, const_cast<VARIANT*>(&value_), 0, VT_I4);
    if (FAILED(result)) Fail(u"a value", result);
    return converted.value_.lVal;
}

AutomationObject::AutomationObject(Variant answer, const Text& member)
{
    VARIANT& value = answer.Raw();
    if (value.vt != VT_DISPATCH || !value.pdispVal) Fail(member, E_NOINTERFACE);
    object_ = value.pdispVal;
    VariantInit(&value); // the reference is ours now
}

AutomationObject::AutomationObject(AutomationObject&& other) noexcept
    : object_(std::exchange(other.object_, nullptr)), ids_(std::move(other.ids_))
{
}

AutomationObject& AutomationObject::operator=(AutomationObject&& other) noexcept
{
    std::swap(object_, other.object_);
    std::swap(ids_, other.ids_);
    return *this;
}

void AutomationObject::Release() noexcept
{
    if (IDispatch* const object = std::exchange(object_, nullptr)) object->Release();
}

Variant AutomationObject::Item(const Text& name)
{
    Variant argument{TextView(name)};
    return Invoke(DISPATCH_METHOD | DISPATCH_PROPERTYGET, u"Item", {&argument, 1});
}

Variant AutomationObject::Invoke(WORD kind, const Text& member, std::span<Variant> arguments)
{
    const DISPID id = IdOf(member);
    // Automation takes arguments last first. They stay ours: these are flat copies.
    std::vector<VARIANT> reversed;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument)
        reversed.push_back(argument->Raw());
    DISPID putName = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{};
    parameters.rgvarg = reversed.data();
    parameters.cArgs = static_cast<UINT>(reversed.size());
    const bool puts = kind == DISPATCH_PROPERTYPUT;
    if (puts) {
        parameters.rgdispidNamedArgs = &putName;
        parameters.cNamedArgs = 1;
    }
    Variant answer;
    ExceptionInfo exception;
    const HRESULT result = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                           puts ? nullptr : &answer.Raw(), exception.Address(), nullptr);
    if (result == DISP_E_EXCEPTION) exception.Throw(member);
    if (FAILED(result)) Fail(member, result);
    return answer;
}

DISPID AutomationObject::IdOf(const Text& member)
{
    if (!object_) Fail(member, E_POINTER);
    for (const auto& [name, id] : ids_)
        if (name == member) return id;
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR name = const_cast<wchar_t*>(Wide(member));
    const HRESULT result = object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result)) Fail(member, result);
    ids_.emplace_back(member, id);
    return id;
}
