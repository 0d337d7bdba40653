// CAutoSpread: the auto spread robot ("价差舟"). It watches the spread of two legs (A, B) or,
// as a butterfly, three (A, B, C), each leg on its own account, and trades it in rounds when
// the spread meets one of its four price lines (auto_spread_rules.h).
//
// A round, leg by leg:
//   1. leg A first, for units x nSpreadLots1 lots, at the opposite best plus nOrderOffset
//      ticks (within the day's limits); with bConfirmOrder through the order confirmation.
//      A resting A is withdrawn once it has waited nStayMilliSeconds or as soon as the spread
//      no longer meets the line. A withdrawn A that filled nothing ends the round; the next
//      quote may start another at the new price.
//   2. once A's order has ended, the units it filled (a part filled is made up to a whole
//      unit: A gets the missing lots as a following order) are completed on B and C: each
//      sent at the opposite best plus nUnstayedOffset ticks, and, while unfilled after
//      nStayMilliSeconds, cancelled and sent again for what is left at the new best. These
//      following orders go on whether the robot runs or is paused: a leg is never left
//      unmatched by the robot's own choice.
//   3. every leg filled: the round is booked (units held +/- the round's), and the next round
//      may start nOrderDelaySeconds later.
// A following order refused kMaxRefusals times in a row pauses the robot with a message; the
// round stays open and a start takes it up again. Refusals wait 1 s, doubling, before the
// next try.
//
// Each leg's orders are followed by a CLeg (LegMachine::SpreadLeg) under tags "sa", "sb",
// "sc". Timer passes look up an order a leg has heard nothing about for 3 s. Every order is
// recorded in the manager's journal with its reason and figures.
//
// Entries open and exits close (close-today on exchange 0 when today's position covers the
// order); in a roll an entry closes A and opens B, an exit the reverse.
//
// Settings come from Profile.ini section "SpreadOrder" when the robot is made with an
// initialised manager; named templates live in AutoSpread.dat through the shared template
// commands. Headless use (a test, a replay) needs only the manager with its facade, clock
// and prompter:
//     CAutoSpread robot(manager);
//     robot.setSettings(s);
//     manager.registerWindow(robot.handle());   // or call onQuote/onOrder directly
//     robot.start();
//     ... host events reach onMessage; call timerPass() every 500 ms ...
//
// Holds the manager, which must outlive it. UI thread only.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/order_journal.h"
#include "host/quote_subscription.h"
#include "host/records.h"
#include "host/window.h"
#include "robots/auto_spread_rules.h"
#include "robots/leg.h"
#include "robots/order_tag.h"
#include "spread/template_commands.h"

class CHelmsmanManage;

// A finished round, as the window lists it.
struct AutoSpreadRound {
    SpreadAction action = SpreadAction::None;
    std::int32_t units = 0;
    double level = 0;              // the line it met
    std::array<double, 3> fill{};  // average fill price per leg (0: leg not used)
    double spread = 0;             // the spread it traded at, from the fills
    std::int64_t startMs = 0, endMs = 0;
};

// What changed, for the window.
enum AutoSpreadChange : unsigned {
    kAutoSpreadChangeState = 1,     // running, rounds, position, leg states
    kAutoSpreadChangeQuote = 2,     // a quote
    kAutoSpreadChangeSettings = 4,  // settings or template applied
};

class CAutoSpread final : public IWndTarget {
public:
    static constexpr int kLegs = 3;
    static constexpr std::uint64_t kLookupMs = 3000;
    static constexpr int kTimerMs = 500;
    static constexpr int kMaxRefusals = 5;

    explicit CAutoSpread(CHelmsmanManage& manager);
    ~CAutoSpread() override;
    CAutoSpread(const CAutoSpread&) = delete;
    CAutoSpread& operator=(const CAutoSpread&) = delete;

    WndHandle handle() const { return m_handle; }
    // "价差舟[公式:%dA-%dB]" or, three legs, "价差舟[公式:%dA-%dB-%dC]" with the leg lots.
    std::string caption() const;
    int legCount() const { return m_settings.bButterfly ? 3 : 2; }

    // ---- Settings ---------------------------------------------------------------------
    const tagAutoSpreadTemplate& settings() const { return m_settings; }
    // Takes new settings and follows the new legs' quotes. Refused (false) while running or
    // while a round is open: a round finishes with the legs it began on.
    bool setSettings(const tagAutoSpreadTemplate& s);
    const std::string& templateName() const { return m_templateName; }
    ITemplateCommands& templates() { return *m_templates; }
    // A template: its settings (the window's nStayMilliSeconds kept) and its name.
    void applyTemplate(const tagAutoSpreadTemplate& t);

    // ---- Running ----------------------------------------------------------------------
    // Checks the settings and the legs' accounts and contracts; a refusal is said in a box.
    bool start();
    // Stops new rounds; a resting A is withdrawn, following orders go on. Never refused.
    void pause();
    bool running() const { return m_running; }
    // Closing the window: asks when running or a round is open; on yes cancels the working
    // orders and gives the quotes back. False when the trader keeps the robot.
    bool requestClose();
    bool closing() const { return m_closing; }

    // ---- Host events ------------------------------------------------------------------
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;
    void onQuote(const IModuleFutureTrader::ITickEx& tick);
    // The legs' matching rule: -1 when closing or the record has no remark, else 1.
    int onOrder(std::uint32_t code, const tagBrokerOrder* record);
    // Looks up quiet orders, withdraws or chases resting ones, then decides.
    void timerPass();

    // ---- What it holds ----------------------------------------------------------------
    std::int32_t position() const { return m_position; }  // units; > 0 long, < 0 short
    // The trader's own figure (after a warning); parked legs are freed and an open round is
    // forgotten. Refused, with a message, while an order works.
    bool overridePosition(std::int32_t units);
    double averageSpread() const { return m_averageSpread; }  // of the units held
    double realised() const { return m_realised; }  // spread points x units, closed rounds
    const std::vector<AutoSpreadRound>& rounds() const { return m_rounds; }
    bool roundOpen() const { return m_round.action != SpreadAction::None; }
    const SpreadPrices& prices() const { return m_prices; }
    bool hasQuote(int leg) const { return m_legs[leg].valid; }
    const IModuleFutureTrader::ITickEx& quote(int leg) const { return m_legs[leg].tick; }
    const CLeg& leg(int i) const { return m_legs[i].leg; }
    // Decimals of leg i's price step (0 until its contract is known).
    int decimals(int i) const { return m_legs[i].decimals; }
    // The plan the current quotes would start now (for the window's hint).
    AutoSpreadPlan plan() const;
    std::string statusText() const;
    // A leg's order state in the leg machine's words with its price.
    std::string legStatus(int i) const;

    void setChanged(std::function<void(unsigned)> f) { m_changed = std::move(f); }

private:
    struct Leg {
        explicit Leg(IPrompter& p, const IClock& c) : leg(LegMachine::SpreadLeg, p, c) {}
        CLeg leg;
        tagSymbol symbol;
        IModuleFutureTrader::ITickEx tick;
        bool valid = false;
        SpreadLegStep step;
        int decimals = 0;
        CQuoteSubscription sub;
        // The open round on this leg.
        double target = 0;        // lots this round needs
        double filled = 0;        // lots filled by orders that have ended
        double cost = 0;          // price x lots of those fills
        double working = 0;       // lots filled so far by the order out
        double workingPrice = 0;  // its average fill price
        std::int64_t sentMs = 0;
        std::int64_t retryAtMs = 0;
        int refusals = 0;
    };
    struct Round {
        SpreadAction action = SpreadAction::None;
        std::int32_t units = 0;
        double level = 0;
        bool hedging = false;  // A has ended: the following orders complete the units
        std::int64_t startMs = 0;
    };

    const tagTemplateAccount& accountOf(int i) const { return m_settings.accounts[i]; }
    void readLegs();
    void recompute();
    void decide();
    void decidePass();
    void startRound(const AutoSpreadPlan& p);
    void stepFirst();
    void stepHedge();
    void sendLeg(int i, double lots, std::int32_t offset, bool confirm);
    std::int32_t legDirection(int i) const;
    std::int32_t openCloseFlag(int i, const tagBrokerOrder& o) const;
    void afterNotice(int i, const LegStep& step, const tagBrokerOrder& record);
    void endFirst();
    void bookRound();
    void onRefused(int i);
    void lookUp(int i);
    void cancelWorking();
    double stepDistance() const;
    void notify(unsigned what);

    CHelmsmanManage& m_manager;
    WndHandle m_handle = 0;
    COrderTagSource m_tags;
    tagAutoSpreadTemplate m_settings;
    std::string m_templateName;
    std::unique_ptr<CToolTemplates<tagAutoSpreadTemplate>> m_templates;
    std::array<Leg, kLegs> m_legs;
    SpreadPrices m_prices;
    Round m_round;
    std::int32_t m_position = 0;
    double m_averageSpread = 0;
    double m_realised = 0;
    std::vector<AutoSpreadRound> m_rounds;
    std::int64_t m_nextRoundMs = 0;
    bool m_running = false;
    bool m_closing = false;
    bool m_started = false;  // started at least once: stopped now means paused
    bool m_asking = false;   // the close question is up: no new round meanwhile
    bool m_deciding = false;
    bool m_again = false;  // something moved while deciding: decide once more
    std::function<void(unsigned)> m_changed;
};
