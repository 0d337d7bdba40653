// One window's quote subscription through the facade (QueryInterface request 1000).
//
// Holds at most one symbol. Switching unsubscribes the old symbol before subscribing the new
// one; a flag of whether a subscription is held makes sure nothing is unsubscribed twice, and
// a symbol with an empty code is never sent. Owned by the tool's core object; UI thread only.
#pragma once

#include "host/subscibe_manage.h"
#include "host/window.h"

class CQuoteSubscription {
public:
    CQuoteSubscription() = default;
    CQuoteSubscription(const CQuoteSubscription&) = delete;
    CQuoteSubscription& operator=(const CQuoteSubscription&) = delete;
    // Releases what is held.
    ~CQuoteSubscription() { release(); }

    // The facade and the window handle that receives the quotes.
    void bind(CSubscibeManage* facade, WndHandle hWnd) {
        if (facade == m_facade && hWnd == m_hWnd) return;
        release();
        m_facade = facade;
        m_hWnd = hWnd;
    }
    // Unsubscribes the held symbol (if any, and if different), then subscribes `symbol`.
    // True when `symbol` is now held. An empty symbol just releases.
    bool switchTo(const tagSymbol& symbol);
    // Unsubscribes the held symbol, once.
    void release();

    bool held() const { return m_held; }
    const tagSymbol& symbol() const { return m_symbol; }

private:
    CSubscibeManage* m_facade = nullptr;
    WndHandle m_hWnd = 0;
    bool m_held = false;
    tagSymbol m_symbol;
};
