#include "tests/windows/FakeDao.h"

#include "platform/win32/WideText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace {

std::string ArgumentText(const VARIANT& value)
{
    if (value.vt == VT_BSTR)
        return "'" + ToUtf8(FromWide(value.bstrVal, SysStringLen(value.bstrVal))).append("'");
    if (value.vt == VT_I4) return std::to_string(value.lVal);
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND ? "missing" : "something else";
}

HRESULT STDMETHODCALLTYPE FillIn(EXCEPINFO* info)
{
    info->bstrDescription = SysAllocString(L"Filled in later.");
    return S_OK;
}

HRESULT Raise(FailWith how, EXCEPINFO* info)
{
    if (how == FailWith::plainResult) return DISP_E_MEMBERNOTFOUND;
    *info = {};
    info->wCode = 3051;
    info->bstrSource = SysAllocString(L"DAO.Fake");
    info->bstrHelpFile = SysAllocString(L"dao.hlp");
    if (how == FailWith::description)
        info->bstrDescription = SysAllocString(L"The engine cannot do this.\r\n");
    if (how == FailWith::deferredDescription) info->pfnDeferredFillIn = FillIn;
    return DISP_E_EXCEPTION;
}

// Counting of references, for everything here.
template <class Interface>
class Counted : public Interface {
public:
    explicit Counted(FakeDao& dao) : dao_(dao) { ++dao_.liveObjects; }
    virtual ~Counted() { --dao_.liveObjects; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID asked, void** object) override
    {
        if (asked != IID_IUnknown && asked != __uuidof(Interface)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

protected:
    FakeDao& dao_;

private:
    ULONG references_ = 1;
};

// Any of the engine's objects; kind is its name in the notes and decides what its members do.
class FakeObject final : public Counted<IDispatch> {
public:
    FakeObject(FakeDao& dao, std::string kind, std::size_t column = 0)
        : Counted(dao), kind_(std::move(kind)), column_(column)
    {
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override
    {
        const std::vector<std::string>& own = kMembers.at(kind_);
        const auto at = std::find(own.begin(), own.end(), ToUtf8(FromWide(names[0])));
        ids[0] = at == own.end() ? DISPID_UNKNOWN : static_cast<DISPID>(at - own.begin());
        return at == own.end() ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* answer, EXCEPINFO* exception, UINT*) override
    {
        const std::string& member = kMembers.at(kind_).at(static_cast<std::size_t>(id));
        const bool puts = (flags & DISPATCH_PROPERTYPUT) != 0;
        if (puts && (arguments->cNamedArgs != 1 || arguments->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
            return DISP_E_PARAMNOTOPTIONAL;
        dao_.calls.push_back(kind_ + "." + member + NoteOf(*arguments, flags));
        const std::size_t call = dao_.calls.size();
        if (call == dao_.failAt || (dao_.failForGood && dao_.failAt != 0 && call > dao_.failAt))
            return Raise(dao_.failWith, exception);
        return Do(member, *arguments, puts, answer);
    }

private:
    static const std::map<std::string, std::vector<std::string>> kMembers; // by kind

    static std::string NoteOf(const DISPPARAMS& arguments, WORD flags)
    {
        if (flags == DISPATCH_PROPERTYGET) return "";
        std::string note;
        for (UINT i = arguments.cArgs; i-- > 0;)
            note += (note.empty() ? "" : ", ") + ArgumentText(arguments.rgvarg[i]);
        return flags == DISPATCH_PROPERTYPUT ? " = " + note : std::string("(").append(note).append(")");
    }

    static HRESULT Give(VARIANT* answer, const char* kind, FakeDao& dao, std::size_t column = 0)
    {
        answer->vt = VT_DISPATCH;
        answer->pdispVal = new FakeObject(dao, kind, column);
        return S_OK;
    }

    static HRESULT Give(VARIANT* answer, bool value)
    {
        answer->vt = VT_BOOL;
        answer->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }

    static HRESULT Give(VARIANT* answer, std::int32_t value)
    {
        answer->vt = VT_I4;
        answer->lVal = value;
        return S_OK;
    }

    HRESULT Do(const std::string& member, const DISPPARAMS& arguments, bool puts, VARIANT* answer)
    {
        if (member == "CreateWorkspace") return Give(answer, "workspace", dao_);
        // Arguments stand in the order from the last to the first.
        const auto text = [&](UINT place) {
            return FromWide(arguments.rgvarg[arguments.cArgs - 1 - place].bstrVal);
        };
        if (member == "CreateDatabase" && dao_.made) dao_.made(text(0));
        if (member == "OpenDatabase" && dao_.opened) dao_.opened(text(0));
        if (member == "CompactDatabase" && dao_.compacted) dao_.compacted(text(0), text(1));
        if (member == "OpenDatabase" || member == "CreateDatabase") return Give(answer, "database", dao_);
        if (member == "OpenRecordset") {
            dao_.current = 0;
            return Give(answer, "recordset", dao_);
        }
        if (member == "Fields") return Give(answer, "fields", dao_);
        if (member == "BOF") return Give(answer, dao_.rows.empty());
        if (member == "EOF") return Give(answer, dao_.current >= dao_.rows.size());
        if (member == "MoveNext") ++dao_.current;
        if (member == "MoveFirst") dao_.current = 0;
        if (member == "MoveLast") dao_.current = dao_.rows.size() - 1;
        if (member == "RecordCount") return Give(answer, static_cast<std::int32_t>(dao_.rows.size()));
        if (member == "Delete" && dao_.current < dao_.rows.size()) dao_.rows[dao_.current].clear();
        if (member == "BeginTrans") dao_.rowsBefore = dao_.rows;
        if (member == "Rollback") dao_.rows = dao_.rowsBefore;
        if (member == "Updatable")
            return Give(answer, kind_ == "database" ? dao_.databaseUpdatable : dao_.recordsetUpdatable);
        if (member == "Type") return Give(answer, dao_.types[column_]);
        if (member == "Size") return Give(answer, dao_.sizes[column_]);
        if (member == "AddNew") dao_.edited.assign(dao_.columns.size(), std::nullopt);
        if (member == "Update") dao_.rows.push_back(dao_.edited);
        if (member == "Update" && dao_.extended) dao_.extended(dao_.edited);
        if (member == "Item") {
            const Text name = FromWide(arguments.rgvarg[0].bstrVal);
            const auto at = std::find(dao_.columns.begin(), dao_.columns.end(), name);
            if (at == dao_.columns.end()) return DISP_E_BADINDEX;
            return Give(answer, "field", dao_, static_cast<std::size_t>(at - dao_.columns.begin()));
        }
        if (member == "Value" && puts) {
            const VARIANT& value = arguments.rgvarg[0];
            if (value.vt == VT_BSTR)
                dao_.edited[column_] = FromWide(value.bstrVal, SysStringLen(value.bstrVal));
        } else if (member == "Value") {
            if (dao_.rows[dao_.current].empty()) return DISP_E_BADINDEX; // deleted
            const std::optional<Text>& value = dao_.rows[dao_.current][column_];
            answer->vt = value ? VT_BSTR : VT_NULL;
            if (value) answer->bstrVal = SysAllocStringLen(Wide(*value), static_cast<UINT>(value->size()));
        }
        return S_OK;
    }

    std::string kind_;
    std::size_t column_;
};

const std::map<std::string, std::vector<std::string>> FakeObject::kMembers = {
    {"engine", {"SetOption", "CreateWorkspace", "OpenDatabase", "CreateDatabase", "CompactDatabase"}},
    {"workspace", {"BeginTrans", "CommitTrans", "Rollback", "Close"}},
    {"database", {"Updatable", "OpenRecordset", "Execute", "Close"}},
    {"recordset",
     {"Updatable", "MoveFirst", "MoveLast", "RecordCount", "BOF", "EOF", "MoveNext", "Fields", "AddNew",
      "Update", "Delete", "Close"}},
    {"fields", {"Item"}},
    {"field", {"Type", "Size", "Value"}},
};

class EngineFactory final : public Counted<IClassFactory> {
public:
    using Counted::Counted;

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID asked, void** object) override
    {
        if (outer) return CLASS_E_NOAGGREGATION;
        FakeObject* const engine = new FakeObject(dao_, "engine");
        const HRESULT result = engine->QueryInterface(asked, object);
        engine->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

} // namespace

FakeRegistry::FakeRegistry()
{
    CoInitialize(nullptr);
}

FakeRegistry::~FakeRegistry()
{
    for (const DWORD cookie : served_) CoRevokeClassObject(cookie);
    for (const std::wstring& progId : named_) {
        RegDeleteKeyW(HKEY_CLASSES_ROOT, (progId + L"\\CLSID").c_str());
        RegDeleteKeyW(HKEY_CLASSES_ROOT, progId.c_str());
    }
    CoUninitialize();
    // The first to enter again only when everybody has left.
    EXPECT_EQ(CoInitialize(nullptr), S_OK) << "COM was entered more often than left";
    CoUninitialize();
}

bool FakeRegistry::DaoIsInstalled()
{
    for (const wchar_t* const progId : {L"DAO.DBEngine.36", L"DAO.DBEngine.120"}) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, progId, 0, KEY_READ, &key) != ERROR_SUCCESS) continue;
        RegCloseKey(key);
        return true;
    }
    return false;
}

void FakeRegistry::Name(const wchar_t* progId, const wchar_t* classId)
{
    // HKEY_CURRENT_USER\Software\Classes would do on Windows, but Wine looks here only.
    const std::wstring key = std::wstring(progId) + L"\\CLSID";
    const DWORD size = static_cast<DWORD>((std::wstring_view(classId).size() + 1) * sizeof(wchar_t));
    EXPECT_EQ(RegSetValueW(HKEY_CLASSES_ROOT, key.c_str(), REG_SZ, classId, size), ERROR_SUCCESS);
    named_.push_back(progId);
}

void FakeRegistry::Serve(const wchar_t* classId, FakeDao& dao)
{
    CLSID type;
    EXPECT_EQ(CLSIDFromString(const_cast<wchar_t*>(classId), &type), S_OK);
    IClassFactory* const factory = new EngineFactory(dao);
    DWORD cookie = 0;
    EXPECT_EQ(CoRegisterClassObject(type, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie), S_OK);
    factory->Release();
    served_.push_back(cookie);
}
