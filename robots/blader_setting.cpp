#include "robots/blader_setting.h"

#include "app/profile_ini.h"
#include "robots/blader_strings.h"
#include "spread/spread_templates.h"

namespace {

// The integer fields in file and section order.
struct IntField {
    const char* key;
    std::int32_t tagBladerSetting::*member;
};
constexpr IntField kInts[] = {
    {"bLong", &tagBladerSetting::bLong},
    {"nMaxPos", &tagBladerSetting::nMaxPos},
    {"nGridInterval", &tagBladerSetting::nGridInterval},
    {"nWinPoint", &tagBladerSetting::nWinPoint},
    {"nTimeExit", &tagBladerSetting::nTimeExit},
};

}  // namespace

void writeTemplate(CArchiveWriter& out, const tagBladerSetting& s) {
    out.writeString(s.strName);
    out.writeU16(s.wExchangeID);
    out.writeString(s.szSymbolCode);
    for (const IntField& f : kInts) out.writeI32(s.*f.member);
}

void readTemplate(CArchiveReader& in, tagBladerSetting& s) {
    in.readString(s.strName);
    in.readU16(s.wExchangeID);
    in.readString(s.szSymbolCode, kTemplateCodeBytes);
    for (const IntField& f : kInts) in.readI32(s.*f.member);
}

tagBladerSetting loadBladerDefault(const CProfileIni& ini) {
    tagBladerSetting s;
    const char* sec = kBladerSection;
    s.wExchangeID = static_cast<std::uint16_t>(ini.getInt(sec, "wExchangeID", s.wExchangeID));
    s.szSymbolCode = ini.getString(sec, "szSymbolCode", "", kTemplateCodeBytes + 1);
    for (const IntField& f : kInts) s.*f.member = ini.getInt(sec, f.key, s.*f.member);
    return s;
}

void writeBladerDefault(CProfileIni& ini, const tagBladerSetting& s) {
    const char* sec = kBladerSection;
    ini.writeString(sec, "wExchangeID", std::to_string(s.wExchangeID));
    ini.writeString(sec, "szSymbolCode", s.szSymbolCode);
    for (const IntField& f : kInts) ini.writeString(sec, f.key, std::to_string(s.*f.member));
}

std::vector<std::string> bladerTemplateRow(const tagBladerSetting& s) {
    return {s.strName,
            s.szSymbolCode,
            s.bLong ? blader_text::kLong : blader_text::kShort,
            std::to_string(s.nMaxPos),
            std::to_string(s.nGridInterval),
            std::to_string(s.nWinPoint),
            std::to_string(s.nTimeExit)};
}
