#include "tools/inspect/NameCommand.h"

#include "oe/SaveDialog.h"
#include "platform/System.h"
#include "store/clsCRC.h"

#include <charconv>
#include <cstdio>

namespace {

bool ReadId(const std::string& text, std::int32_t& id)
{
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, id);
    return error == std::errc() && stop == end && id >= 0;
}

} // namespace

int NameUsage()
{
    std::fputs("usage: quillbox-inspect name ID SUBJECT [--id-only]\n", stderr);
    return 1;
}

int CrcUsage()
{
    std::fputs("usage: quillbox-inspect crc TEXT\n", stderr);
    return 1;
}

int NameCommand(const std::vector<std::string>& args)
{
    SaveRequest request;
    const bool idOnly = args.size() == 3 && args[2] == "--id-only";
    if ((args.size() != 2 && !idOnly) || !ReadId(args[0], request.id)) return NameUsage();
    request.subject = FromUtf8(args[1]);
    request.idOnly = idOnly;
    SystemCodePage codePage;
    std::printf("%s\n", ToUtf8(MakeFileName(request, codePage)).c_str());
    return 0;
}

int CrcCommand(const std::vector<std::string>& args)
{
    if (args.size() != 1) return CrcUsage();
    SystemCodePage codePage;
    std::printf("%s\n", ToUtf8(CrcText(clsCRC(codePage).CalculateString(FromUtf8(args[0])))).c_str());
    return 0;
}
