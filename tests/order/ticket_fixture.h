// A ticket core on a FakeHost, with its own manager (never the process-wide one), a
// scripted prompter and UI, a manual clock and a throw-away user directory.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "order/master_dialog.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

class TicketTest : public ::testing::Test {
protected:
    static constexpr std::int64_t kNowMs = 1'717'000'000'000;

    FakeHost host;
    ScriptedPrompter prompter;
    ScriptedUi ui;
    ManualClock clock{kNowMs};
    CHelmsmanManage manage;
    TempDir root{"helmsman_ticket"};
    std::unique_ptr<CMasterDialog> ticket;

    void SetUp() override {
        manage.init(7, &host, root.string(), "trader", 0);
        manage.setPrompter(&prompter);
        manage.setUi(&ui);
        manage.setClock(&clock);

        host.accounts = {FakeHost::account("A1", "B1", "张三"),
                         FakeHost::account("A2", "B2", "李四")};
        host.exchanges = {{1, "上期所"}, {2, "大商所"}};
        host.symbolsByExchange[1] = {{1, "ag2412"}, {1, "rb2410"}};
        host.symbolsByExchange[2] = {{2, "m2501"}};
        // A 0.2 tick: one point is 0.2, prices show one decimal.
        host.details["ag2412"] = contractDetail(0.2f, 1, 10, 0.1);
        host.details["rb2410"] = contractDetail(1.0f, 1, 10, 0.1);
        host.details["m2501"] = contractDetail(1.0f, 1, 10, 0.1);
        host.summaries["A1"] = tagAccountSummary{"A1", "B1", 0, 0, 100000};
    }

    void TearDown() override { ticket.reset(); }

    static IModuleFutureTrader::ITickEx quote(const std::string& code, double bid, double ask,
                                              double last = 0, double lower = 0, double upper = 0,
                                              std::uint16_t ex = 1) {
        return TickBuilder(ex, code).bid(bid, 3).ask(ask, 4).last(last).limits(lower, upper);
    }

    // Changes the in-memory settings the way the options page would.
    void settings(const std::function<void(HelmsmanSettings&)>& change) {
        HelmsmanSettings s = manage.settings();
        change(s);
        manage.saveSettings(s);
    }

    // Opens a ticket (no pre-fill).
    CMasterDialog& openTicket(const tagHelmsmanPrefill* prefill = nullptr) {
        ticket = std::make_unique<CMasterDialog>(manage);
        ticket->open(prefill);
        return *ticket;
    }

    // Opens a ticket on a symbol.
    CMasterDialog& openOn(const std::string& code, std::uint16_t ex = 1) {
        CMasterDialog& t = openTicket();
        EXPECT_TRUE(t.selectSymbol(tagSymbol{ex, code}));
        return t;
    }

    // A new snapshot in the host, then its notice. The notice carries no record: the ticket
    // must read the snapshot itself.
    std::intptr_t deliverQuote(const IModuleFutureTrader::ITickEx& t) {
        host.quotes[t.strCode] = t;
        return manage.sendMessage(ticket->handle(), kMsgDataChange, kEventQuote, 0);
    }
};
