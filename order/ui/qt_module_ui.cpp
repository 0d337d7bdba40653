#include "order/ui/qt_module_ui.h"

#include <QApplication>

#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "order/confirm_dialog.h"
#include "order/confirm_strings.h"
#include "order/multi_confirm.h"
#include "order/ui/bargain_window.h"
#include "order/ui/confirm_order_dialog.h"
#include "order/ui/multi_confirm_dialog.h"
#include "order/ui/same_confirm_dialog.h"

namespace {

// A confirmation sits over the window that asked for it; without one, over the host.
QWidget* dialogOwner() {
    QWidget* active = QApplication::activeWindow();
    return active ? active : window_placement::hostWindow();
}

}  // namespace

QtModuleUi::QtModuleUi(CHelmsmanManage* manager) : m_manager(manager) {}

QtModuleUi::~QtModuleUi() {
    // The exports keep this object in a static. When the host unloads the library while its
    // application object lives, the notice goes with the library's code. A widget must not be
    // destroyed after (or while) the application object goes: the process is ending anyway.
    // A host must destroy its application object before exit, as Qt requires of any host.
    if (QApplication::instance() && !QCoreApplication::closingDown()) delete m_fillNotice.data();
}

CHelmsmanManage& QtModuleUi::manager() const {
    return m_manager ? *m_manager : CHelmsmanManage::instance();
}

bool QtModuleUi::confirmOrder(const tagBrokerOrder& order, const std::string& caller,
                              const tagAlgoSetting* algo) {
    ConfirmOrderDialog dlg(CConfirmDialog(order, algo, caller, manager().facade()), dialogOwner());
    return dlg.exec() == QDialog::Accepted;
}

bool QtModuleUi::confirmBatch(std::vector<tagBrokerOrder>& orders, const std::string& caller,
                              const tagAlgoSetting* algo) {
    CMultiConfirm core(orders, caller, algo, manager().facade(),
                       CMultiConfirm::volumeCapFor(manager().settings()));
    MultiConfirmDialog dlg(core, manager(), dialogOwner());
    if (dlg.exec() != QDialog::Accepted) return false;
    orders = core.orders();  // the trader's edits travel with the batch
    return true;
}

bool QtModuleUi::confirmTriggerOrder(const tagTriggerOrder& order, const std::string& caller) {
    ConfirmOrderDialog dlg(CConfirmDialog(order, caller, manager().facade()), dialogOwner());
    return dlg.exec() == QDialog::Accepted;
}

void QtModuleUi::showSameConfirm(const std::vector<tagBrokerOrder>& orders,
                                 const std::string& caller) {
    auto* dlg = new SameConfirmDialog(orders, caller, manager(), window_placement::hostWindow());
    window_placement::rememberPlace(dlg, "SameConfirm");
    dlg->show();
    dlg->raise();
    dlg->activateWindow();
}

void QtModuleUi::showFillNotice(const std::vector<tagBargainOrder>& fills) {
    if (!m_fillNotice) m_fillNotice = new BargainWindow(manager().facade(), manager().userDir());
    m_fillNotice->showFills(fills);
}

bool QtModuleUi::handToAlgoCentre(const std::vector<tagBrokerOrder>& orders,
                                  const tagAlgoSetting&) {
    manager().prompter().inform(
        confirm_text::kAlgoCaption,
        confirm_fmt::format(confirm_text::kAlgoUnavailable, static_cast<int>(orders.size())),
        PromptIcon::Warning);
    return false;
}
