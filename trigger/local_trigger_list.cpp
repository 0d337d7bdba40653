// The centre's list: display options, rows, the cancel commands and the CSV export.
#include <cmath>
#include <cstdio>
#include <ctime>

#include "app/column_layout.h"
#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "host/codes.h"
#include "host/gbk_codec.h"
#include "host/number_text.h"
#include "host/utf8_path.h"
#include "trigger/local_trigger.h"
#include "trigger/trigger_strings.h"

namespace {

using namespace trigger_text;

// "%H:%M:%S" of calendar seconds, or "-" when unset.
std::string timeText(std::int64_t t) {
    if (t == 0) return kNoTime;
    const std::tm tm = toLocalTm(t);
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buf;
}

std::string volumeText(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.f", v);
    return buf;
}

bool passesShowType(int showType, std::int32_t status) {
    switch (showType) {
        case 0:
            return true;
        case 1:
            return status == kOrderWaitTrigger;
        case 2:
            return status == kOrderCancelled;
        case 3:
            return status == kOrderFilled;
        default:
            return false;
    }
}

int flag(int v) {
    return v ? 1 : 0;
}

}  // namespace

LocalTriggerDisplay loadLocalTriggerDisplay(const std::filesystem::path& profile) {
    CProfileIni ini(profile);
    LocalTriggerDisplay d;
    d.nShowType = ini.getInt(kSection, kKeyShowType, 1);
    if (d.nShowType < 0 || d.nShowType > 3) d.nShowType = 1;
    d.bShowExpiredTime = flag(ini.getInt(kSection, kKeyShowExpiredTime, 0));
    d.bShowEntryFlag = flag(ini.getInt(kSection, kKeyShowEntryFlag, 0));
    d.bShowSpeculate = flag(ini.getInt(kSection, kKeyShowSpeculate, 0));
    d.bShowComment = flag(ini.getInt(kSection, kKeyShowComment, 0));
    return d;
}

bool saveLocalTriggerDisplay(const std::filesystem::path& profile, const LocalTriggerDisplay& d) {
    CProfileIni ini(profile);
    const auto put = [&](const char* key, int v) {
        ini.writeString(kSection, key, std::to_string(v));
    };
    put(kKeyShowType, d.nShowType);
    put(kKeyShowExpiredTime, d.bShowExpiredTime);
    put(kKeyShowEntryFlag, d.bShowEntryFlag);
    put(kKeyShowSpeculate, d.bShowSpeculate);
    put(kKeyShowComment, d.bShowComment);
    return static_cast<bool>(ini.save());
}

void CLocalTrigger::setDisplay(const LocalTriggerDisplay& display) {
    if (display == m_display) return;
    m_display = display;
    if (m_manager.initialised()) saveLocalTriggerDisplay(m_manager.profilePath(), m_display);
}

std::string CLocalTrigger::columnLayout() const {
    std::string layout = kColumns;
    if (m_display.bShowExpiredTime) layout += kColExpiry;
    if (m_display.bShowEntryFlag) layout += kColEntryFlag;
    if (m_display.bShowSpeculate) layout += kColHedge;
    if (m_display.bShowComment) layout += kColComment;
    return layout;
}

bool CLocalTrigger::isListed(std::size_t index) const {
    std::lock_guard triggerLock(m_triggerLock);
    if (index >= m_records.size()) return false;
    const tagTriggerOrder& t = m_records[index].trigger;
    return t.nTriggerType >= 0 && t.nTriggerType <= 4 &&
           passesShowType(m_display.nShowType, t.nStatus);
}

std::vector<std::string> CLocalTrigger::rowCells(std::size_t index) const {
    std::lock_guard triggerLock(m_triggerLock);
    const tagLocalTrigger& rec = m_records.at(index);
    const tagTriggerOrder& t = rec.trigger;
    const auto priceText = [&](double p) { return number_text::format(p, rec.nPriceDecimals); };
    std::vector<std::string> cells;
    cells.reserve(13);
    cells.push_back(t.strAccountID);
    cells.push_back(t.strCode);
    cells.push_back(volumeText(t.dVolume));
    cells.emplace_back(codes::orderStatusText(t.nStatus));
    cells.emplace_back(codes::triggerTypeText(t.nTriggerType));
    cells.push_back(priceText(t.dTriggerPrice));
    cells.push_back(std::fabs(t.dPrice) < 1e-6 ? std::string(kMarketPrice) : priceText(t.dPrice));
    cells.push_back(timeText(t.tStart));
    cells.emplace_back(triggerResultText(m_hot[index].result));
    if (m_display.bShowExpiredTime) cells.push_back(timeText(t.tExpiry));
    if (m_display.bShowEntryFlag) cells.emplace_back(codes::openCloseText(t.nOpenClose));
    if (m_display.bShowSpeculate) cells.emplace_back(codes::hedgeText(t.nHedge));
    if (m_display.bShowComment) cells.push_back(t.strRemark);
    return cells;
}

std::vector<LocalTriggerRow> CLocalTrigger::rows() const {
    std::lock_guard triggerLock(m_triggerLock);
    std::vector<LocalTriggerRow> out;
    for (std::size_t i = 0; i < m_records.size(); ++i)
        if (isListed(i)) out.push_back({static_cast<int>(i), rowCells(i)});
    return out;
}

std::vector<int> CLocalTrigger::cancelSelected(const std::vector<int>& indices) {
    std::vector<int> cancelled;
    IPrompter& prompter = m_manager.prompter();
    for (auto it = indices.rbegin(); it != indices.rend(); ++it) {
        const int index = *it;
        if (index < 0 || static_cast<std::size_t>(index) >= size()) continue;
        if (!prompter.ask(kConfirm, kAskCancel, PromptIcon::Question)) continue;
        // Only the status changes; the lock is held for that write alone, never across the
        // question.
        std::lock_guard triggerLock(m_triggerLock);
        setStatus(static_cast<std::size_t>(index), kOrderCancelled);
        cancelled.push_back(index);
    }
    return cancelled;
}

bool CLocalTrigger::cancelAll() {
    if (!m_manager.prompter().ask(kConfirm, kAskCancel, PromptIcon::Question)) return false;
    bool any = false;
    std::lock_guard triggerLock(m_triggerLock);
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        if (m_records[i].trigger.nStatus != kOrderWaitTrigger) continue;
        setStatus(i, kOrderCancelled);
        any = true;
    }
    return any;
}

bool CLocalTrigger::exportCsv(const std::filesystem::path& path) {
    std::string text;
    for (const ColumnDef& c : parseColumnLayout(columnLayout())) {
        text += text.empty() ? "" : ",";
        text += c.title;
    }
    text += "\n";
    for (const LocalTriggerRow& row : rows()) {
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            if (i) text += ",";
            text += row.cells[i];
        }
        text += "\n";
    }
    const std::string bytes = gbk::fromUtf8(text);
    // Appending on purpose: exporting to an existing file adds a second header and the rows.
    std::FILE* f = openFile(path, "ab");
    bool ok = f != nullptr;
    if (f) {
        ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
        ok = (std::fclose(f) == 0) && ok;
    }
    if (!ok) {
        char msg[1024];
        std::snprintf(msg, sizeof msg, kCannotExport, pathUtf8(path).c_str());
        m_manager.prompter().inform(kInfo, msg, PromptIcon::Information);
    }
    return ok;
}
