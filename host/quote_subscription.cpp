#include "host/quote_subscription.h"

bool CQuoteSubscription::switchTo(const tagSymbol& symbol) {
    if (m_held && m_symbol == symbol) return true;
    release();
    if (symbol.empty() || !m_facade) return false;
    tagSubscribeBlock block{1, &symbol};
    if (m_facade->QueryInterface(kQuerySubscribeQuote, m_hWnd, 1, &block) == 0) return false;
    m_held = true;
    m_symbol = symbol;
    return true;
}

void CQuoteSubscription::release() {
    if (!m_held) return;
    m_held = false;
    if (!m_facade || m_symbol.empty()) return;
    tagSubscribeBlock block{1, &m_symbol};
    m_facade->QueryInterface(kQuerySubscribeQuote, m_hWnd, 0, &block);
}
