// BatchTraderWindow: the window of CBatchTrader (dialog 25009, "多帐户批量下单"), a new one per
// call of OpenBatchTrader: the instrument (exchange and code boxes, or a link from elsewhere),
// the quote, open/close, the price or "对价", the volume mode (by multiple with a base
// volume, or by a named volume set), the accounts with their multiple or volume (editable
// in place) and the lots each would trade, and buy and sell buttons. "保存" writes both CSV
// files; a load that skipped lines says so on the status line.
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>

#include "account/batch_trader.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QRadioButton;
class QTableWidget;

class BatchTraderWindow : public QDialog {
public:
    BatchTraderWindow(CHelmsmanManage& manage, const tagSymbol* symbol, QWidget* parent = nullptr);
    CBatchTrader& core() { return m_core; }
    CBatchTrader::Result send(std::int32_t direction);

private:
    void fillSymbols();
    void fillAccounts();
    void fillSets();
    void showQuote();
    void toCore();

    CHelmsmanManage& m_manage;
    CBatchTrader m_core;
    QComboBox* m_exchange = nullptr;
    QComboBox* m_symbol = nullptr;
    QLabel* m_quote = nullptr;
    QComboBox* m_openClose = nullptr;
    QDoubleSpinBox* m_price = nullptr;
    QCheckBox* m_touch = nullptr;
    QRadioButton* m_byMultiple = nullptr;
    QRadioButton* m_bySet = nullptr;
    QDoubleSpinBox* m_base = nullptr;
    QComboBox* m_set = nullptr;
    QTableWidget* m_accounts = nullptr;
    QLabel* m_status = nullptr;
    bool m_filling = false;
};

int openBatchTrader(const tagSymbol* symbol);
