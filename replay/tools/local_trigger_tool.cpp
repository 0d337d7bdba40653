// The local trigger centre under replay. Its section [LocalTrigger] holds, besides the
// list's display keys (nShowType, bShow…; a headless run shows no list), the triggers:
//
//   Trigger1=IF2101,买,吊买,5228.0,0,1
//   Trigger2=IF2101,卖,追卖,5190.0,5189.0,1,平仓,14:30:00
//
// numbered from 1 without a gap: code, direction (买/卖 or 1/2), trigger type (吊买 吊卖 追买
// 追卖 or 0-3), trigger price, execution price (0: at market), volume, then optionally the
// open/close flag (开仓 平仓 平今仓 or 0-2; 开仓 when left out) and an expiry time of day on
// the first replayed day (none when left out). Every trigger is handed to the centre before
// the first tick, on the account of the run.
#include <string_view>

#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "replay/replay_tool.h"
#include "trigger/local_trigger.h"

namespace {

class LocalTriggerTool final : public replay::IReplayTool {
public:
    explicit LocalTriggerTool(CHelmsmanManage& manager) : centre(manager) {}
    int timerPeriodMs() const override { return CLocalTrigger::kStepMs; }
    void onTimer() override { centre.step(); }
    CLocalTrigger centre;
};

// The code of a word among `words` (its index) or of a digit 0..n-1; -1 when neither.
int codeOf(std::string_view s, std::initializer_list<std::initializer_list<std::string_view>> words) {
    int i = 0;
    for (const auto& alternatives : words) {
        for (std::string_view w : alternatives)
            if (s == w) return i;
        if (s.size() == 1 && s[0] == '0' + i) return i;
        ++i;
    }
    return -1;
}

std::vector<std::string> fieldsOf(std::string line) {
    for (std::size_t p; (p = line.find("，")) != std::string::npos;) line.replace(p, 3, ",");
    std::vector<std::string> out;
    std::size_t start = 0;
    while (true) {
        std::size_t comma = line.find(',', start);
        std::string f = line.substr(start, comma == std::string::npos ? comma : comma - start);
        f.erase(0, f.find_first_not_of(" \t"));
        f.erase(f.find_last_not_of(" \t") + 1);
        out.push_back(f);
        if (comma == std::string::npos) return out;
        start = comma + 1;
    }
}

// One trigger line; empty when good, else why not.
std::string parseTrigger(const std::string& line, const replay::ToolContext& ctx,
                         tagTriggerOrder& t) {
    const auto f = fieldsOf(line);
    if (f.size() < 6 || f.size() > 8) return "needs 6 to 8 fields";
    t.strAccountID = ctx.account;
    t.strCode = f[0];
    bool known = false;
    for (const auto& s : ctx.symbols)
        if (s.strCode == f[0]) t.nExchangeID = s.wExchangeID, known = true;
    if (!known) return "instrument " + f[0] + " is not replayed";
    const int dir = codeOf(f[1], {{}, {"买", "买入"}, {"卖", "卖出"}});
    if (dir < 1) return "bad direction " + f[1];
    t.nDirection = dir;
    t.nTriggerType = codeOf(f[2], {{"吊买"}, {"吊卖"}, {"追买"}, {"追卖"}});
    if (t.nTriggerType < 0) return "bad trigger type " + f[2];
    const auto trig = number_text::parse(f[3]), px = number_text::parse(f[4]),
               vol = number_text::parse(f[5]);
    if (!trig || *trig <= 0) return "bad trigger price " + f[3];
    if (!px || *px < 0) return "bad execution price " + f[4];
    if (!vol || *vol <= 0) return "bad volume " + f[5];
    t.dTriggerPrice = *trig;
    t.dPrice = *px;
    t.dVolume = *vol;
    t.nOpenClose = f.size() > 6 ? codeOf(f[6], {{"开仓"}, {"平仓"}, {"平今仓", "平今"}}) : kOpen;
    if (t.nOpenClose < 0) return "bad open/close flag " + f[6];
    if (f.size() > 7) {
        int h, m, s;
        char c1, c2;
        std::tm day = toLocalTm(ctx.startMs / 1000);
        if (std::sscanf(f[7].c_str(), "%d%c%d%c%d", &h, &c1, &m, &c2, &s) != 5 || c1 != ':' ||
            c2 != ':' || h > 23 || m > 59 || s > 59)
            return "bad expiry time " + f[7];
        day.tm_hour = h, day.tm_min = m, day.tm_sec = s, day.tm_isdst = -1;
        t.tExpiry = fromLocalTm(day);
    }
    t.nStatus = kOrderWaitTrigger;
    return {};
}

std::unique_ptr<replay::IReplayTool> makeLocalTrigger(replay::ToolContext& ctx,
                                                      std::string& error) {
    std::vector<tagTriggerOrder> triggers;
    for (int i = 1;; ++i) {
        const std::string key = "Trigger" + std::to_string(i);
        if (!ctx.settings.hasKey("LocalTrigger", key)) break;
        tagTriggerOrder t;
        std::string why = parseTrigger(ctx.settings.getString("LocalTrigger", key, {}, 1024), ctx, t);
        if (!why.empty()) {
            error = "[LocalTrigger] " + key + ": " + why;
            return nullptr;
        }
        triggers.push_back(t);
    }
    if (triggers.empty()) {
        error = "[LocalTrigger] holds no Trigger1 line";
        return nullptr;
    }
    auto tool = std::make_unique<LocalTriggerTool>(ctx.manager);
    for (std::size_t i = 0; i < triggers.size(); ++i)
        if (!tool->centre.addTrigger(triggers[i])) {
            error = "[LocalTrigger] Trigger" + std::to_string(i + 1) + ": no such contract";
            return nullptr;
        }
    return tool;
}

const bool kRegistered = replay::registerTool("LocalTrigger", &makeLocalTrigger);

}  // namespace
