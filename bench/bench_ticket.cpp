// The order ticket's hot paths: a quote arriving at an open ticket until its display state
// (quote texts, openable quantity) is updated and the window told; and a send from the buy
// button up to the facade's SendOrder, without confirmation.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>
#include <string>

#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "order/master_dialog.h"
#include "support/quote_builders.h"

namespace {

// Answers what the ticket asks and records nothing, so the measurement is the ticket's.
class MinimalFacade final : public CSubscibeManage {
public:
    IModuleFutureTrader::ISpecDetailValue detail;
    IModuleFutureTrader::ITickEx snapshot;
    const IModuleFutureTrader::ITickEx* current = &snapshot;  // what GetMarketQuote answers
    std::int64_t sent = 0;

    int GetMarketQuote(const tagSymbol&, IModuleFutureTrader::ITickEx& t) override {
        t = *current;
        return 1;
    }
    int GetSymbolProperty(const tagSymbol&, IModuleFutureTrader::ISpecDetailValue& v) override {
        v = detail;
        return 1;
    }
    int GetAllPositions(std::vector<tagOpenedPosition>&) override { return 1; }
    int GetPosition(tagOpenedPosition& p, const std::string&, const std::string&,
                    const tagSymbol&) override {
        p.dTotal = 5;
        p.dLong = 3;
        p.dShort = 2;
        return 1;
    }
    int GetAllOrders(std::vector<tagBrokerOrder>&) override { return 1; }
    int GetOpenOrders(std::vector<tagBrokerOrder>&, const std::string&, const std::string&,
                      const tagSymbol&) override {
        return 1;
    }
    int GetOrder(tagBrokerOrder&, const std::string&, const std::string&,
                 const std::string&) override {
        return 0;
    }
    int SendOrder(tagBrokerOrder& o) override {
        benchmark::DoNotOptimize(o.dPrice);
        ++sent;
        return 1;
    }
    int DeleteOrder(const std::string&, const std::string&, const std::string&) override {
        return 1;
    }
    int GetAllTriggerOrders(std::vector<tagTriggerOrder>&) override { return 1; }
    int GetTriggerOrdersBySymbol(std::vector<tagTriggerOrder>&, const tagSymbol&) override {
        return 1;
    }
    int GetTriggerOrder(tagTriggerOrder&, const std::string&, const std::string&,
                        const std::string&) override {
        return 0;
    }
    int SendTriggerOrder(tagTriggerOrder&) override { return 1; }
    int ModifyTriggerOrder(const std::string&, const tagTriggerOrder&) override { return 1; }
    int DeleteTriggerOrder(const std::string&, const std::string&, const std::string&) override {
        return 1;
    }
    int GetAllBargains(std::vector<tagBargainOrder>&) override { return 1; }
    int GetAccountSummary(tagAccountSummary& s, const std::string&, const std::string&) override {
        s.dAvailable = 1'000'000;
        return 1;
    }
    int GetAvailableAccounts(std::vector<tagAccoutInfo>& out) override {
        out = {tagAccoutInfo{"8800123", "9999", "bench", 1}};
        return 1;
    }
    int GetAllExchanges(std::vector<tagExchangeInfo>& out) override {
        out = {{1, "SHFE"}};
        return 1;
    }
    int GetExchangeSymbols(int, std::vector<tagSymbol>& out, int) override {
        out = {{1, "ag2412"}};
        return 1;
    }
    int GetBrokerByID(tagBrokerInfo&, const std::string&) override { return 1; }
    bool GetConfigFileProperty(const std::string&, const std::string&, const std::string&,
                               std::string&) override {
        return false;
    }
    int QueryInterface(std::uint32_t, std::uint32_t, std::uint8_t, void*) override { return 1; }
};

struct Desk {
    MinimalFacade facade;
    ManualClock clock{1'717'000'000'000};
    CHelmsmanManage manage;
    std::filesystem::path root;
    std::unique_ptr<CMasterDialog> ticket;
    std::int64_t notified = 0;

    Desk() {
        root = std::filesystem::temp_directory_path() /
               ("helmsman_bench_ticket_" + std::to_string(std::random_device{}()));
        facade.detail = contractDetail(1.0f, 1, 15, 0.12);
        facade.snapshot.wExchangeID = 1;
        facade.snapshot.strCode = "ag2412";
        facade.snapshot.dLast = 7001;
        facade.snapshot.dBid = 7000;
        facade.snapshot.dAsk = 7002;
        manage.init(1, &facade, root.string(), "bench", 0);
        manage.setClock(&clock);
        HelmsmanSettings s = manage.settings();
        s.bShowNormalOrderConfirm = 0;
        manage.saveSettings(s);
        ticket = std::make_unique<CMasterDialog>(manage);
        ticket->setListener([this](unsigned) { ++notified; });
        ticket->open(nullptr);
        ticket->selectSymbol({1, "ag2412"});
    }
    ~Desk() {
        ticket.reset();
        std::error_code ec;
        std::filesystem::remove_all(root, ec);
    }
};

void BM_QuoteToTicketDisplay(benchmark::State& state) {
    Desk desk;
    IModuleFutureTrader::ITickEx ticks[2];
    for (int i = 0; i < 2; ++i) {
        ticks[i] = desk.facade.snapshot;
        ticks[i].dLast = 7001 + i;
        ticks[i].dBid = 7000 + i;
        ticks[i].dAsk = 7002 + i;
        ticks[i].dBidVol = 12 + i;
        ticks[i].dAskVol = 30 - i;
        ticks[i].dUpperLimit = 7500;
        ticks[i].dLowerLimit = 6500;
    }
    const WndHandle h = desk.ticket->handle();
    std::size_t n = 0;
    for (auto _ : state) {
        // The host's snapshot moves, then its notice arrives; the ticket reads the snapshot.
        desk.facade.current = &ticks[n++ & 1];
        desk.manage.sendMessage(h, kMsgDataChange, kEventQuote, 0);
        benchmark::DoNotOptimize(desk.ticket->quoteTexts().last[0]);
    }
    if (desk.notified < static_cast<std::int64_t>(state.iterations()))
        state.SkipWithError("quotes did not reach the display state");
}
BENCHMARK(BM_QuoteToTicketDisplay);

void BM_TicketSendToFacade(benchmark::State& state) {
    Desk desk;
    auto& c = desk.ticket->normalOrder().controls();
    c.useBidAsk = true;
    c.useOffset = true;
    c.offsetPoints = 2;
    c.volumeText = "3";
    c.stopLoss = c.stopLossAuto = true;
    c.takeProfit = c.takeProfitAuto = true;
    for (auto _ : state) {
        benchmark::DoNotOptimize(desk.ticket->normalOrder().send(kDirBuy));
    }
    if (desk.facade.sent != static_cast<std::int64_t>(state.iterations()))
        state.SkipWithError("not every send reached the facade");
}
BENCHMARK(BM_TicketSendToFacade);

}  // namespace
