// CLeg: one order leg of a robot and the state machine that follows its order.
//
// A robot owns one CLeg per machine it drives: a single-leg robot an opening and a closing
// leg; a two-leg grid robot one leg for its opening pair and one for its closing pair (leg B
// rests first, leg A is hit once B has filled). The leg keeps the tag of the order it waits
// for, its state, the host's order identifier and the recorded price, and moves only on:
//   - the robot's decisions: send (only from the state that expects an order, so one
//     decision can never send twice), cancel, the end of a cycle, the user's intervention;
//   - the host's notifications for the order whose tag it holds.
//
// States: 0 idle; single-leg opening 1 sent, 2 queued, 3 cancelling, 4 filled; closing 5-8
// likewise; two-leg pair 1-3 on leg B, 4 B filled, 5 A sent, 6 A at the exchange. 4, 8 and
// the pair's 6 end a cycle: the robot books the result and calls finishCycle(). A status the
// machine does not expect shows a modal message naming the host's status and then parks the
// leg in 99, where it neither sends nor moves until the user intervenes.
//
// The host may drop notifications. A leg waiting on an order for longer than the robot's
// patience can look the order up (reconcile) and take its current status as if notified, so
// it never stays stuck without saying so.
//
// UI thread only; the prompter and clock must outlive the leg.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "host/clock.h"
#include "host/prompter.h"
#include "host/records.h"
#include "host/subscibe_manage.h"

enum class LegMachine : std::uint8_t {
    SingleOpen,   // states 0-4
    SingleClose,  // states 0, 5-8
    PairOpen,     // states 0-6, opening messages
    PairClose,    // states 0-6, closing messages
    // One leg of a spread round that trades its lots in as many orders as it takes: states
    // and messages of SingleOpen, but an order that ends with part of it filled (the host's
    // status 6, after our cancel or anyone's) returns to idle like a cancelled one, and the
    // robot books the filled part from the notification.
    SpreadLeg,
};

// How a single-leg robot words its stages: plain orders or resting orders (the scalper).
enum class LegWording : std::uint8_t { Orders, Resting };

inline constexpr std::int32_t kLegIdle = 0;
inline constexpr std::int32_t kLegParked = 99;

// Submits an order to the host; returns the host's result (1 accepted, 0 refused) and
// writes back the identifier and status, as SendOrder does.
using OrderSubmit = std::function<int(tagBrokerOrder&)>;

// What one notification did to a leg.
struct LegStep {
    std::int32_t from = 0;
    std::int32_t to = 0;
    bool parked = false;  // a failure message was shown and the leg is now in 99
    bool changed() const { return from != to; }
};

class CLeg {
public:
    CLeg(LegMachine machine, IPrompter& prompter, const IClock& clock)
        : m_machine(machine), m_prompter(&prompter), m_clock(&clock) {}

    LegMachine machine() const { return m_machine; }
    const std::string& tag() const { return m_tag; }
    std::int32_t state() const { return m_state; }
    const std::string& orderId() const { return m_orderId; }
    double price() const { return m_price; }
    std::int32_t direction() const { return m_direction; }

    // Whether the leg expects an order now: idle, or (pair) leg B filled and A not yet sent.
    bool canSend() const;
    // Sends `order` under the new `tag`: from idle to 1 (5 for a closing leg), or, for a pair
    // whose leg B has filled (4), leg A to 5. The price is recorded from the order. A refusal
    // the host writes back at once is taken as a notification of that status. False, with
    // nothing sent, when the leg does not expect an order.
    bool send(tagBrokerOrder& order, std::string tag, const OrderSubmit& submit);
    // Asks the host to cancel the queued order (2 -> 3, or 6 -> 7 when closing). False when
    // there is no queued order to cancel; the leg then stays as it is.
    bool cancel(CSubscibeManage& host);
    // Leaves a final state (4, 8, pair 6) once the robot has booked it.
    bool finishCycle();
    // The user has dealt with a parked leg: back to idle.
    bool intervene();
    // The robot's own stop (its time is up): an idle leg parks in 99 without a message.
    bool halt();

    // A host notification whose remark is this leg's tag. Messages are shown before the
    // leg parks, as the box is modal.
    LegStep onOrder(const tagBrokerOrder& record);

    // Whether the leg waits on the host and has heard nothing for `quietMs` or more.
    bool overdue(std::uint64_t quietMs) const;
    // Looks the order up and takes its status if it moved since the leg last heard. Returns
    // what that did; nothing when the order is unknown or unchanged. `seen`, when given,
    // receives the record taken (left alone otherwise).
    LegStep reconcile(CSubscibeManage& host, tagBrokerOrder* seen = nullptr);

    // The status text of the leg's state. Numbers show the recorded price and its distance
    // from the best quote on the order's own side; `decimals` < 0 writes them with "%.f",
    // else pre-formatted with that many places (the grids' price format).
    std::string statusText(double bestBid, double bestAsk, int decimals = -1,
                           LegWording wording = LegWording::Orders) const;

private:
    bool single() const {
        return m_machine == LegMachine::SingleOpen || m_machine == LegMachine::SingleClose ||
               m_machine == LegMachine::SpreadLeg;
    }
    bool closing() const { return m_machine == LegMachine::SingleClose; }
    std::int32_t base() const { return closing() ? 4 : 0; }  // state offset of the machine
    std::int32_t stepSingle(std::int32_t status);
    std::int32_t stepPair(std::int32_t status);
    std::int32_t park(const char* format, std::int32_t status);
    bool waiting() const;

    LegMachine m_machine;
    IPrompter* m_prompter;
    const IClock* m_clock;

    std::string m_tag;
    std::int32_t m_state = kLegIdle;
    std::string m_orderId;
    double m_price = 0;
    std::int32_t m_direction = 0;
    std::string m_account;
    std::string m_broker;
    std::int32_t m_lastStatus = -1;  // the last host status heard for the current order
    std::uint64_t m_lastHeard = 0;   // clock tick of the send or the last notification
};

// The matching rule every robot applies to a host event before its legs see it. Returns -1
// when the robot is stopping, the record is missing or its remark is empty; otherwise 1,
// after running the first leg (opening before closing) whose tag equals the remark, if any.
// `matched` receives that leg (or nullptr).
int routeOrderNotification(bool stopping, std::uint32_t eventCode, const tagBrokerOrder* record,
                           std::span<CLeg* const> legs, CLeg** matched = nullptr);
