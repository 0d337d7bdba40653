#include "algo/algo_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

#include "app/profile_ini.h"
#include "spread/archive.h"
#include "spread/template_store.h"

namespace {

struct SettingKey {
    const char* key;
    std::int32_t tagAlgoSetting::* field;
};

// The keys in the order of the section (and of every record on disk).
constexpr SettingKey kKeys[] = {
    {"nBaseLine", &tagAlgoSetting::nBaseLine},
    {"bAutoKP", &tagAlgoSetting::bAutoKP},
    {"nLotType", &tagAlgoSetting::nLotType},
    {"nLotSingle", &tagAlgoSetting::nLotSingle},
    {"nLotRandom", &tagAlgoSetting::nLotRandom},
    {"nLotRatio", &tagAlgoSetting::nLotRatio},
    {"nPriceType", &tagAlgoSetting::nPriceType},
    {"nTimeType", &tagAlgoSetting::nTimeType},
    {"nTimeInterval", &tagAlgoSetting::nTimeInterval},
    {"nTimeRadom", &tagAlgoSetting::nTimeRadom},
    {"nTimeTotal", &tagAlgoSetting::nTimeTotal},
    {"nTimeSession", &tagAlgoSetting::nTimeSession},
    {"nStopRange", &tagAlgoSetting::nStopRange},
    {"nOutStopRange", &tagAlgoSetting::nOutStopRange},
    {"nLimitRange", &tagAlgoSetting::nLimitRange},
    {"nOutLimitRange", &tagAlgoSetting::nOutLimitRange},
};

constexpr double kMaxLots = 1e9;

bool finiteIn(double v, double lo, double hi) {
    return std::isfinite(v) && v >= lo && v <= hi;
}

bool validState(int s) {
    return (s >= kAlgoNormal && s <= kAlgoPartFilled) || s == kAlgoError;
}

void writeOrder(CArchiveWriter& out, const CAlgoOrder& o) {
    out.writeI32(o.m_nSerial);
    out.writeI32(o.m_nRun);
    out.writeI32(o.m_nState);
    out.writeI32(o.m_nPacing);
    out.writeString(o.m_strAccountID);
    out.writeString(o.m_strBrokerID);
    out.writeU16(o.m_symbol.wExchangeID);
    out.writeString(o.m_symbol.strCode);
    out.writeString(o.m_strSymbolText);
    out.writeI32(o.m_nMinMove);
    out.writeF64(o.m_dPriceUnit);
    out.writeI32(o.m_nDirection);
    out.writeI32(o.m_nOpenClose);
    out.writeI32(o.m_nHedge);
    out.writeI32(o.m_nMinAutoKPPos);
    out.writeF64(o.m_dOrderPrice);
    out.writeF64(o.m_dTotal);
    out.writeF64(o.m_dDoneFilled);
    out.writeF64(o.m_dBasePrice);
    out.writeF64(static_cast<double>(o.m_tStartMs));
    out.writeI32(o.m_bSliceOpen ? 1 : 0);
    out.writeI32(o.m_nSliceNo);
    out.writeString(o.m_strSliceID);
    out.writeF64(o.m_dSliceVolume);
    out.writeF64(o.m_dSliceFilled);
    out.writeF64(o.m_dSlicePrice);
    out.writeString(o.m_strMessage);
    writeAlgoSetting(out, o.m_setting);
}

// Reads one order; false when the bytes ran out or the record breaks a rule.
bool readOrder(CArchiveReader& in, CAlgoOrder& o) {
    std::int32_t sliceOpen = 0;
    double startMs = 0;
    in.readI32(o.m_nSerial);
    in.readI32(o.m_nRun);
    in.readI32(o.m_nState);
    in.readI32(o.m_nPacing);
    in.readString(o.m_strAccountID, 64);
    in.readString(o.m_strBrokerID, 64);
    in.readU16(o.m_symbol.wExchangeID);
    in.readString(o.m_symbol.strCode, 31);
    in.readString(o.m_strSymbolText, 64);
    in.readI32(o.m_nMinMove);
    in.readF64(o.m_dPriceUnit);
    in.readI32(o.m_nDirection);
    in.readI32(o.m_nOpenClose);
    in.readI32(o.m_nHedge);
    in.readI32(o.m_nMinAutoKPPos);
    in.readF64(o.m_dOrderPrice);
    in.readF64(o.m_dTotal);
    in.readF64(o.m_dDoneFilled);
    in.readF64(o.m_dBasePrice);
    in.readF64(startMs);
    in.readI32(sliceOpen);
    in.readI32(o.m_nSliceNo);
    in.readString(o.m_strSliceID, 64);
    in.readF64(o.m_dSliceVolume);
    in.readF64(o.m_dSliceFilled);
    in.readF64(o.m_dSlicePrice);
    in.readString(o.m_strMessage, 512);
    readAlgoSetting(in, o.m_setting);
    if (!in.ok()) return false;
    o.m_bSliceOpen = sliceOpen != 0;
    if (!finiteIn(startMs, 0, 9e15)) return false;
    o.m_tStartMs = static_cast<std::int64_t>(startMs);
    const bool ok =
        o.m_nSerial > 0 && o.m_nRun >= kRunPaused && o.m_nRun <= kRunDeleted &&
        validState(o.m_nState) && o.m_nPacing >= 0 && o.m_nPacing <= 3 &&
        (o.m_nDirection == kDirBuy || o.m_nDirection == kDirSell) && o.m_nSliceNo >= 0 &&
        (sliceOpen == 0 || sliceOpen == 1) && finiteIn(o.m_dTotal, 1, kMaxLots) &&
        finiteIn(o.m_dDoneFilled, 0, o.m_dTotal) && finiteIn(o.m_dPriceUnit, 0, 1e9) &&
        finiteIn(o.m_dSliceVolume, 0, o.m_dTotal) &&
        finiteIn(o.m_dSliceFilled, 0, o.m_dSliceVolume) &&
        o.m_dDoneFilled + o.m_dSliceFilled <= o.m_dTotal + 1e-9 &&
        std::isfinite(o.m_dOrderPrice) && std::isfinite(o.m_dBasePrice) &&
        std::isfinite(o.m_dSlicePrice) && (o.m_bSliceOpen || o.m_dSliceFilled == 0) &&
        (o.m_bSliceOpen || (o.m_nState == kAlgoNormal || o.m_nState == kAlgoError));
    return ok;
}

}  // namespace

namespace algo_file {

std::string compose(const std::vector<const CAlgoOrder*>& orders) {
    CArchiveWriter out;
    template_file_detail::writeHeader(out, kMagic, orders.size());
    for (const CAlgoOrder* o : orders) writeOrder(out, *o);
    return out.take();
}

std::vector<CAlgoOrder> parse(std::string_view bytes, bool* complete) {
    std::vector<CAlgoOrder> list;
    CArchiveReader in(bytes);
    std::uint32_t count = 0;
    bool exactHeader = false;
    bool whole = false;
    if (template_file_detail::readHeader(in, kMagic, count, exactHeader)) {
        std::set<int> serials;
        for (std::uint32_t i = 0; i < count; ++i) {
            CAlgoOrder o;
            if (!readOrder(in, o) || !serials.insert(o.m_nSerial).second) break;
            list.push_back(std::move(o));
        }
        whole = list.size() == count && in.atEnd();
    }
    if (complete) *complete = whole;
    return list;
}

}  // namespace algo_file

tagAlgoSetting loadAlgoDefault(const std::filesystem::path& profile) {
    CProfileIni ini(profile);
    tagAlgoSetting s;
    for (const SettingKey& k : kKeys) s.*k.field = ini.getInt(kAlgoDefaultSection, k.key, s.*k.field);
    return s;
}

void writeAlgoDefault(CProfileIni& ini, const tagAlgoSetting& s) {
    for (const SettingKey& k : kKeys) {
        char buf[16];
        std::snprintf(buf, sizeof buf, "%d", s.*k.field);
        ini.writeString(kAlgoDefaultSection, k.key, buf);
    }
}

FileWriteResult saveAlgoDefault(const std::filesystem::path& profile, const tagAlgoSetting& s) {
    return replaceFileLocked(
        profile, [&](const std::filesystem::path& target) -> std::optional<std::string> {
            CProfileIni ini;
            if (ini.load(target) == CProfileIni::LoadResult::Unreadable) return std::nullopt;
            writeAlgoDefault(ini, s);
            return ini.bytes();
        });
}

tagAlgoSetting clampAlgoSetting(tagAlgoSetting s) {
    s.nBaseLine = std::max(1, s.nBaseLine);
    s.bAutoKP = s.bAutoKP != 0 ? 1 : 0;
    s.nLotType = s.nLotType == 1 ? 1 : 0;
    s.nLotSingle = std::max(1, s.nLotSingle);
    s.nLotRandom = std::clamp(s.nLotRandom, 0, 100);
    s.nLotRatio = std::clamp(s.nLotRatio, 0, 100);
    s.nPriceType = std::clamp(s.nPriceType, -10, 10);
    s.nTimeType = s.nTimeType != 0 ? 1 : 0;
    s.nTimeInterval = std::max(1, s.nTimeInterval);
    s.nTimeRadom = std::clamp(s.nTimeRadom, 0, 100);
    s.nTimeTotal = std::max(1, s.nTimeTotal);
    s.nTimeSession = s.nTimeSession != 0 ? 1 : 0;
    s.nStopRange = std::max(0, s.nStopRange);
    s.nOutStopRange = s.nOutStopRange != 0 ? 1 : 0;
    s.nLimitRange = std::max(0, s.nLimitRange);
    s.nOutLimitRange = s.nOutLimitRange != 0 ? 1 : 0;
    return s;
}

void writeAlgoSetting(CArchiveWriter& out, const tagAlgoSetting& s) {
    for (const SettingKey& k : kKeys) out.writeI32(s.*k.field);
}

void readAlgoSetting(CArchiveReader& in, tagAlgoSetting& s) {
    for (const SettingKey& k : kKeys) in.readI32(s.*k.field);
}

void writeTemplate(CArchiveWriter& out, const AlgoSetTemplate& t) {
    out.writeString(t.strName);
    writeAlgoSetting(out, t.setting);
}

void readTemplate(CArchiveReader& in, AlgoSetTemplate& t) {
    in.readString(t.strName);
    readAlgoSetting(in, t.setting);
}
