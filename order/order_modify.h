// COrderModify: changing a working plain order (dialog 25014) without widgets.
//
// The host has no "modify" for a plain order, so a change is a cancel followed by a new
// order, and never two live orders: the new order leaves only after the host has reported
// the old one cancelled. What happened to the old order decides what is sent:
//   - cancelled (wholly or in part): a new order at the new price for the new volume less
//     whatever filled since the window opened (nothing when that leaves no volume);
//   - filled before the cancel reached it: nothing;
//   - the cancel was refused (the order had just filled, or had already gone): nothing.
// Each notice is acted on once: a duplicated or late notice after the change is finished
// changes nothing. A window closed while the cancel is under way sends nothing.
//
// Before anything is sent, corrections replace the trader's input and stop the change so
// the trader sees the corrected values and presses again:
//   - a price outside the day's limit band becomes the current ask when it lies above the
//     band ("...当前叫卖价！") and the current bid when below ("...当前叫买价！"), for a buy
//     and a sell alike: the side of the book nearest to what was typed, so an order meant to
//     trade at once (a buy above, a sell below) is still marketable and one meant to wait
//     (a buy below, a sell above) still rests;
//   - a closing volume above what the side holds, or not above 0, becomes the side's whole
//     position (a sell closes the long side "平多仓" against "买持仓", a buy the short side).
// The new order keeps the old order's account, symbol, direction, flags and remark.
//
// Owned by its window. It listens for order changes (message 2070, code 2) through a
// handle the manager issues, registered while it lives. Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/records.h"
#include "host/window.h"

class CHelmsmanManage;

class COrderModify final : public IWndTarget {
public:
    struct Controls {
        double price = 0;
        std::string volumeText;
    };

    enum class State {
        Editing,     // the trader may change price and volume
        Cancelling,  // the old order's cancel was sent; waiting for the host's notice
        Done,        // the change is finished: sent, or nothing to send
        Failed,      // nothing was sent and the old order is as it was (or gone)
    };

    enum class Result { Refused, Corrected, Cancelling };

    COrderModify(CHelmsmanManage& manage, const tagBrokerOrder& working);
    ~COrderModify() override;
    COrderModify(const COrderModify&) = delete;
    COrderModify& operator=(const COrderModify&) = delete;

    WndHandle handle() const { return m_handle; }
    Controls& controls() { return m_controls; }
    const Controls& controls() const { return m_controls; }
    const tagBrokerOrder& original() const { return m_original; }
    State state() const { return m_state; }
    // What became of the change, for the window's status line ("" while editing).
    const std::string& status() const { return m_status; }
    // The new order once sent.
    const tagBrokerOrder& replacement() const { return m_replacement; }
    bool replacementSent() const { return m_sent; }

    // Reads position and quote afresh.
    void refresh();
    const tagOpenedPosition& position() const { return m_position; }
    const IModuleFutureTrader::ITickEx& tick() const { return m_tick; }
    int priceDecimals() const { return m_decimals; }
    // "%.f(%.f/%.f)": total, long, short.
    std::string positionText() const;
    // "%s(%.f)/%s(%.f)": today's part of each side.
    std::string sidesText() const;

    // The 改单 button.
    Result submit();
    // Re-reads the old order while a cancel is under way, for a host whose notice is lost.
    void poll();

    // Called after each state change (the window redraws).
    std::function<void()> onChanged;

    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;

private:
    void onOrder(const tagBrokerOrder& order);
    void finish(State state, std::string status);
    void inform(const char* caption, const char* text) const;

    CHelmsmanManage& m_manage;
    tagBrokerOrder m_original;
    WndHandle m_handle = 0;
    Controls m_controls;
    State m_state = State::Editing;
    std::string m_status;
    tagOpenedPosition m_position;
    IModuleFutureTrader::ITickEx m_tick;
    int m_decimals = 2;
    double m_filledAtStart = 0;  // the old order's fills when the window opened
    tagBrokerOrder m_pending;    // the new order, waiting for the cancel
    tagBrokerOrder m_replacement;
    bool m_sent = false;
};
