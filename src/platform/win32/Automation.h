// Automation.h: late-bound automation: objects reached by the names of their members, with values that are
// freed by themselves. Single-threaded.
// Fails by: DatabaseError with the description that the object gave; std::bad_alloc.
#pragma once
#include "platform/Database.h"

#include <windows.h>

#include <oleauto.h>
#include <span>
#include <utility>
#include <vector>

// COM for this thread, for as long as this lives. May be nested.
class ComApartment {
public:
    // Also usable when the thread is initialised in another way already; then there is nothing to give back.
    ComApartment() : entered_(SUCCEEDED(CoInitialize(nullptr))) {}
    ~ComApartment()
    {
        if (entered_) CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool entered_;
};

class Variant {
public:
    Variant() { VariantInit(&value_); }
    explicit Variant(TextView text);
    explicit Variant(std::int32_t number);
    static Variant Missing(); // an optional argument that is left out
    static Variant Null();
    ~Variant() { VariantClear(&value_); }
    Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    Variant& operator=(Variant&&) = delete;

    Text ToText() const; // empty for null; numbers and dates in the user's locale
    bool ToBool() const;
    std::int32_t ToNumber() const;
    VARIANT& Raw() { return value_; }

private:
    VARIANT value_;
};

// One counted reference to an object; moved, never copied.
class AutomationObject {
public:
    AutomationObject() = default;
    explicit AutomationObject(IDispatch* object) : object_(object) {} // takes the reference over
    // The object that an answer holds; DatabaseError naming the member when it holds none.
    AutomationObject(Variant answer, const Text& member);
    ~AutomationObject() { Release(); }
    AutomationObject(AutomationObject&& other) noexcept;
    AutomationObject& operator=(AutomationObject&& other) noexcept;

    explicit operator bool() const { return object_ != nullptr; }
    void Release() noexcept;

    // Arguments in the order in which they are written.
    Variant Get(const Text& property) { return Invoke(DISPATCH_PROPERTYGET, property, {}); }
    void Put(const Text& property, Variant value) { Invoke(DISPATCH_PROPERTYPUT, property, {&value, 1}); }
    Variant Call(const Text& method, std::span<Variant> arguments = {})
    {
        return Invoke(DISPATCH_METHOD, method, arguments);
    }
    // Collections call what they answer with a name a method or a property, as it pleases them.
    Variant Item(const Text& name);

private:
    Variant Invoke(WORD kind, const Text& member, std::span<Variant> arguments);
    DISPID IdOf(const Text& member);

    IDispatch* object_ = nullptr;
    std::vector<std::pair<Text, DISPID>> ids_; // asked once for each name
};
