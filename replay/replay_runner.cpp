#include "replay/replay_runner.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "host/clock.h"
#include "host/price.h"
#include "replay/replay_tool.h"
#include "sim/sim_exchange.h"
#include "sim/sim_recorded.h"

namespace replay {
namespace {

constexpr std::int64_t kSampleMs = 60'000;  // one curve point a minute, plus one per fill

// One instrument's trading, from the account's fills.
struct Book {
    tagSymbol symbol;
    double multiplier = 1;
    double position = 0;  // signed lots, long positive
    double cash = 0;      // money paid (-) and received (+) for the fills
    double mark = 0;      // the last price position profit is counted at
};

}  // namespace

struct ReplayRunner::World final : ISimEventSink {
    ReplayOptions opt;
    IOrderJournal* journal;
    ManualClock clock;
    std::unique_ptr<SimExchange> sim;
    CHelmsmanManage manager;
    CProfileIni settings;
    std::unique_ptr<IReplayTool> tool;

    std::vector<std::int64_t> times;  // distinct tick times, ascending
    ReplayResult res;
    std::vector<Book> books;
    double peak = 0;
    std::int64_t lastSampleMs = 0;
    bool sampled = false;
    bool filled = false;  // a fill since the last sample

    World(ReplayOptions o, IOrderJournal* j) : opt(std::move(o)), journal(j) {}
    ~World() override {
        tool.reset();  // gives back its subscriptions while the exchange still stands
        if (sim) sim->setEventSink(nullptr);
    }

    // ---- The host's side of the exchange's events ----------------------------------------
    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        if (eventKind(code) == kEventNewFill && data)
            onFill(*reinterpret_cast<const tagBargainOrder*>(data));
        manager.dataChange(code, data);
    }
    void onLogonStateChange(std::uint32_t code, std::uintptr_t data) override {
        manager.logonStateChange(code, data);
    }
    void onWindowMessage(std::uint32_t hWnd, std::uint32_t msg, std::uintptr_t wParam,
                         std::uintptr_t lParam) override {
        manager.sendMessage(hWnd, msg, wParam, lParam);
    }

    // ---- Measuring -------------------------------------------------------------------------
    double grossPnl() const {
        double g = 0;
        for (const Book& b : books) g += b.cash + b.position * b.mark * b.multiplier;
        return g;
    }
    void noteEquity() {
        const double net = grossPnl() - res.commission;
        peak = std::max(peak, net);
        res.maxDrawdown = std::max(res.maxDrawdown, peak - net);
    }
    double markOf(const Book& b, double fallback) {
        IModuleFutureTrader::ITickEx q;
        if (sim->GetMarketQuote(b.symbol, q) && isPricePresent(q.dLast)) return q.dLast;
        return fallback;
    }
    void onFill(const tagBargainOrder& f) {
        if (f.strAccountID != opt.account) return;
        for (Book& b : books) {
            if (b.symbol.strCode != f.strCode || b.symbol.wExchangeID != f.nExchangeID) continue;
            const double qty = f.nDirection == kDirBuy ? f.dVolume : -f.dVolume;
            const double before = b.position;
            b.position += qty;
            if (std::fabs(b.position) < 1e-9) b.position = 0;
            b.cash -= qty * f.dPrice * b.multiplier;
            b.mark = markOf(b, f.dPrice);
            if (before != 0 && (b.position == 0 || (before > 0) != (b.position > 0)))
                ++res.roundTrips;
            res.maxPosition = std::max(res.maxPosition, std::fabs(b.position));
        }
        tagAccountSummary s;
        if (sim->GetAccountSummary(s, opt.account, {})) res.commission = s.dCommission;
        filled = true;
        noteEquity();
    }
    // After a tick round: position profit at the new prices, and the curve.
    void markTick(std::int64_t now) {
        bool held = false;
        for (Book& b : books)
            if (b.position != 0) {
                b.mark = markOf(b, b.mark);
                held = true;
            }
        if (held) noteEquity();
        if (filled || !sampled || now - lastSampleMs >= kSampleMs) sample(now);
    }
    void sample(std::int64_t now) {
        CurvePoint p;
        p.timeMs = now;
        p.netPnl = grossPnl() - res.commission;
        for (const Book& b : books) p.positions.push_back(b.position);
        res.curve.push_back(std::move(p));
        lastSampleMs = now;
        sampled = true;
        filled = false;
    }

    void moveTo(std::int64_t ms) { clock.advanceMs(ms - clock.nowMs()); }
    void timerPass() {
        tool->onTimer();
        sim->deliverPending();
        if (filled) sample(clock.nowMs());  // the curve turns where the fill is
    }
};

ReplayRunner::ReplayRunner(ReplayOptions options, IOrderJournal* journal)
    : m_world(std::make_unique<World>(std::move(options), journal)) {}

ReplayRunner::~ReplayRunner() = default;

bool ReplayRunner::prepare(std::string& error) {
    World& w = *m_world;
    if (w.opt.tickFiles.empty()) {
        error = "no tick file given";
        return false;
    }
    const ToolFactory factory = findTool(w.opt.tool);
    if (!factory) {
        error = "unknown tool " + w.opt.tool + " (known:";
        for (const auto& n : toolNames()) error += " " + n;
        error += ")";
        return false;
    }
    if (w.settings.load(w.opt.settingsFile) != CProfileIni::LoadResult::Loaded) {
        error = "cannot read settings file " + w.opt.settingsFile;
        return false;
    }

    // Every file's ticks on calendar time, grouped by instrument.
    struct Group {
        std::string code;
        std::vector<sim::TickRecord> ticks;
        std::vector<std::int64_t> at;
    };
    std::vector<Group> groups;
    for (const std::string& path : w.opt.tickFiles) {
        std::vector<sim::TickRecord> ticks;
        sim::TickParseReport report;
        if (!sim::parseTickFile(path, ticks, report)) {
            error = report.error;
            return false;
        }
        if (ticks.empty()) {
            error = path + ": no usable tick" +
                    (report.skipped ? " (" + sim::skippedSummary(report) + ")" : std::string());
            return false;
        }
        w.res.skippedLines += report.skipped;
        if (report.skipped)
            w.res.fileNotes.push_back(std::filesystem::path(path).filename().string() + ": " +
                                      sim::skippedSummary(report));
        const std::string code = sim::symbolCodeFromTickPath(path);
        auto at = sim::tradingDayTimes(ticks);
        auto g = std::find_if(groups.begin(), groups.end(),
                              [&](const Group& x) { return x.code == code; });
        if (g == groups.end()) g = groups.insert(groups.end(), Group{code, {}, {}});
        g->ticks.insert(g->ticks.end(), ticks.begin(), ticks.end());
        g->at.insert(g->at.end(), at.begin(), at.end());
    }
    for (const Group& g : groups) w.times.insert(w.times.end(), g.at.begin(), g.at.end());
    std::sort(w.times.begin(), w.times.end());
    w.res.ticks = w.times.size();
    w.times.erase(std::unique(w.times.begin(), w.times.end()), w.times.end());
    w.res.firstMs = w.times.front();
    w.res.lastMs = w.times.back();

    // The exchange at the first tick, replaying every instrument.
    w.clock.setNowMs(w.res.firstMs);
    SimOptions so;
    so.randomWalk = false;
    so.yesterdayPositions = false;
    w.sim = std::make_unique<SimExchange>(w.clock, so);
    for (Group& g : groups) {
        tagSymbol symbol;
        if (!w.sim->learnContract(g.code, symbol)) {
            error = "unknown contract " + g.code;
            return false;
        }
        if (!w.sim->loadTicksAt(symbol, std::move(g.ticks), std::move(g.at))) {
            error = "contract " + g.code + " cannot be replayed";
            return false;
        }
        IModuleFutureTrader::ISpecDetailValue detail;
        w.sim->GetSymbolProperty(symbol, detail);
        w.res.symbols.push_back(symbol);
        w.res.priceDecimals[symbol.strCode] = price::decimals(detail.nMinMove, detail.fPriceUnit);
        Book b;
        b.symbol = symbol;
        b.multiplier = detail.dMultiplier > 0 ? detail.dMultiplier : 1;
        w.books.push_back(b);
    }
    if (!w.sim->isLoggedOn(w.opt.account)) {
        error = "unknown account " + w.opt.account;
        return false;
    }

    w.manager.setClock(&w.clock);
    w.manager.setJournal(w.journal);
    const auto root = std::filesystem::absolute(w.opt.settingsFile).parent_path();
    w.manager.init(1, w.sim.get(), root.string(), "replay", 0);
    w.sim->setEventSink(&w);

    ToolContext context{w.manager, w.settings, w.opt.account, w.res.symbols, w.res.firstMs};
    w.tool = factory(context, error);
    if (!w.tool) return false;
    w.sim->deliverPending();
    return true;
}

ReplayResult ReplayRunner::run(const std::function<void(std::size_t, std::size_t)>& progress) {
    World& w = *m_world;
    if (!w.tool) return w.res;
    const std::int64_t period = w.tool->timerPeriodMs();
    std::int64_t nextTimer =
        period > 0 ? w.times.front() + period : std::numeric_limits<std::int64_t>::max();
    constexpr std::size_t kProgressEvery = 1 << 14;
    const std::size_t n = w.times.size();
    for (std::size_t i = 0; i < n; ++i) {
        const std::int64_t t = w.times[i];
        for (; nextTimer < t; nextTimer += period) {
            w.moveTo(nextTimer);
            w.timerPass();
        }
        w.moveTo(t);
        w.sim->step();
        w.sim->deliverPending();
        w.markTick(t);
        if (nextTimer == t) {
            w.timerPass();
            nextTimer += period;
        }
        if (progress && (i + 1) % kProgressEvery == 0) progress(i + 1, n);
    }
    while (w.sim->deliverPending() > 0) {
    }
    if (progress) progress(n, n);

    std::vector<tagBrokerOrder> orders;
    w.sim->GetAllOrders(orders);
    for (auto& o : orders)
        if (o.strAccountID == w.opt.account) w.res.orders.push_back(std::move(o));
    std::vector<tagBargainOrder> fills;
    w.sim->GetAllBargains(fills);
    for (auto& f : fills)
        if (f.strAccountID == w.opt.account) w.res.fills.push_back(std::move(f));
    w.res.holdings = w.tool->holdings();
    w.res.grossPnl = w.grossPnl();
    w.res.netPnl = w.res.grossPnl - w.res.commission;
    if (w.res.curve.empty() || w.res.curve.back().timeMs != w.res.lastMs) w.sample(w.res.lastMs);
    return w.res;
}

}  // namespace replay
