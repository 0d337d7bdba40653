// HotkeyDialog: "我的键盘", the editor of the ticket's keyboard shortcuts (order/hotkeys.h)
// and of whether keyboard orders are confirmed (bShowHotkeyOrderConfirm).
//
// Modal, owned by the ticket window that opens it. Accepting refuses a key given to two
// actions (with a message, keeping the dialog open so nothing typed is lost), then writes
// the "HotKey" section and the confirmation flag through the manager's settings save.
#pragma once

#include <QDialog>
#include <array>

#include "order/hotkeys.h"

class CHelmsmanManage;
class QCheckBox;
class QKeySequenceEdit;

class HotkeyDialog final : public QDialog {
    Q_OBJECT
public:
    HotkeyDialog(CHelmsmanManage& manage, const HotkeySettings& keys, QWidget* parent = nullptr);

    // The settings as edited (valid after accept()).
    const HotkeySettings& result() const { return m_result; }
    bool confirmOrders() const;

    void accept() override;

private:
    CHelmsmanManage& m_manage;
    HotkeySettings m_result;
    QCheckBox* m_enabled = nullptr;
    QCheckBox* m_confirm = nullptr;
    std::array<QKeySequenceEdit*, kHotkeyActionCount> m_edits{};
};
