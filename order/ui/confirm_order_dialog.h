// ConfirmOrderDialog: the modal window of one order's confirmation. It shows what its
// CConfirmDialog builds — the title, the text block — under a band coloured by direction
// (red for a buy, green for a sell, the convention of the traders who use it), with 确认 and
// 取消. It sends nothing: exec() returns QDialog::Accepted and whoever asked for the
// confirmation sends. Enter confirms, Escape cancels.
//
// Owned by the caller for the duration of exec(); UI thread only.
#pragma once

#include <QDialog>

#include "order/confirm_dialog.h"

class QPushButton;

class ConfirmOrderDialog : public QDialog {
    Q_OBJECT
public:
    ConfirmOrderDialog(const CConfirmDialog& core, QWidget* parent = nullptr);

    const CConfirmDialog& core() const { return m_core; }
    QPushButton* okButton() const { return m_ok; }
    QPushButton* cancelButton() const { return m_cancel; }

private:
    CConfirmDialog m_core;
    QPushButton* m_ok = nullptr;
    QPushButton* m_cancel = nullptr;
};

// Colours shared by the confirmation and fill windows.
namespace confirm_ui {
QColor directionColor(bool buy);
// A push button's style sheet in the direction's colour.
QString directionButtonStyle(bool buy);
}  // namespace confirm_ui
