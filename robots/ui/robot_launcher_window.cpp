#include "robots/ui/robot_launcher_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "robots/robot_strings.h"
#include "robots/ui/grids_spread_window.h"

namespace t = robot_text;

RobotLauncherWindow::RobotLauncherWindow(CHelmsmanManage& manager, QWidget* parent,
                                         std::vector<RobotEntry> robots)
    : QWidget(parent, Qt::Window), m_core(manager, std::move(robots)) {
    setObjectName("RobotLauncherWindow");
    setWindowTitle(QString::fromUtf8(t::kLauncherTitle));

    m_list = new QTreeWidget(this);
    m_list->setColumnCount(2);
    m_list->setHeaderLabels(
        {QString::fromUtf8(t::kLauncherColumnName), QString::fromUtf8(t::kLauncherColumnWhat)});
    m_list->setRootIsDecorated(false);
    m_list->setWordWrap(true);
    m_list->setUniformRowHeights(false);
    m_list->header()->setStretchLastSection(true);
    const auto& entries = m_core.robots();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const RobotEntry& e = entries[i];
        QString name = QString::fromStdString(e.name);
        if (!e.available()) name += QString::fromUtf8(t::kLauncherNotYet);
        auto* item = new QTreeWidgetItem(m_list, {name, QString::fromStdString(e.description)});
        item->setData(0, Qt::UserRole, static_cast<qulonglong>(i));
        item->setToolTip(1, QString::fromStdString(e.description));
        if (!e.available()) item->setFlags(item->flags() & ~Qt::ItemIsEnabled);
    }

    m_open = new QPushButton(QString::fromUtf8(t::kLauncherOpen), this);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_open);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    layout->addLayout(buttons);

    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &RobotLauncherWindow::updateButton);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, [this] { openSelected(); });
    connect(m_open, &QPushButton::clicked, this, [this] { openSelected(); });
    updateButton();
    // Wide enough for every line whole, in the font the desk's style gives the list.
    ensurePolished();
    m_list->ensurePolished();
    m_list->resizeColumnToContents(0);
    const int frame = 2 * m_list->frameWidth() + layout->contentsMargins().left() +
                      layout->contentsMargins().right() + 24;
    int widest = 0;
    for (const RobotEntry& e : entries)
        widest = std::max(
            widest, m_list->fontMetrics().horizontalAdvance(QString::fromStdString(e.description)));
    const int columns = m_list->columnWidth(0) + widest + 16;
    resize(std::max(600, columns + frame), 200);
}

WndHandle RobotLauncherWindow::openSelected() {
    QTreeWidgetItem* item = m_list->currentItem();
    if (!item || !(item->flags() & Qt::ItemIsEnabled)) return 0;
    return m_core.open(item->data(0, Qt::UserRole).toULongLong());
}

void RobotLauncherWindow::updateButton() {
    QTreeWidgetItem* item = m_list->currentItem();
    m_open->setEnabled(item && item->isSelected() && (item->flags() & Qt::ItemIsEnabled));
}

RobotLauncherWindow* openRobotLauncher() {
    static QPointer<RobotLauncherWindow> launcher;
    if (!launcher) {
        std::vector<RobotEntry> robots = CRobotLauncher::standardRobots();
        for (RobotEntry& r : robots)
            if (r.name == t::kGridSpreadName) r.open = openGridsSpread;
        launcher = new RobotLauncherWindow(CHelmsmanManage::instance(),
                                           window_placement::hostWindow(), std::move(robots));
        launcher->setAttribute(Qt::WA_DeleteOnClose);
        window_placement::placeCentred(launcher);
    }
    launcher->show();
    launcher->raise();
    launcher->activateWindow();
    return launcher;
}
