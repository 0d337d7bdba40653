#include "shell/desk_style.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

void applyDeskStyle(QApplication& app) {
    app.setStyle(QStyleFactory::create("Fusion"));

    // A sans-serif CJK face when one is installed; Qt falls back per glyph otherwise.
    const QStringList families = QFontDatabase::families();
    for (const char* wanted : {"Noto Sans CJK SC", "Source Han Sans SC", "Microsoft YaHei",
                               "PingFang SC", "WenQuanYi Micro Hei"}) {
        if (families.contains(QString::fromUtf8(wanted))) {
            QFont f(QString::fromUtf8(wanted));
            f.setPointSizeF(9.5);
            app.setFont(f);
            break;
        }
    }

    QPalette p;
    const QColor window(0x1e, 0x22, 0x28);
    const QColor base(0x0c, 0x0e, 0x12);
    const QColor alt(0x14, 0x17, 0x1c);
    const QColor text(0xdc, 0xdf, 0xe4);
    const QColor highlight(0x1f, 0x4e, 0x8c);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, alt);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(0x2a, 0x2f, 0x37));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::Highlight, highlight);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::ToolTipBase, QColor(0x2a, 0x2f, 0x37));
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, QColor(0x80, 0x86, 0x90));
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0x70, 0x74, 0x7a));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x70, 0x74, 0x7a));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x70, 0x74, 0x7a));
    p.setColor(QPalette::Link, QColor(0x5a, 0xa0, 0xff));
    app.setPalette(p);

    app.setStyleSheet(QStringLiteral(
        "QTableView { gridline-color: #2a2f37; selection-background-color: #1f4e8c; }"
        "QTableView[board=\"true\"] { font-size: 10.5pt; }"
        "QHeaderView::section { background: #252a32; color: #b8bec8; border: none;"
        "  border-right: 1px solid #323842; border-bottom: 1px solid #323842;"
        "  padding: 3px 4px; }"
        "QLabel#paneTitle { color: #f0c850; font-weight: bold; }"
        "QLabel#marketClock { color: #f0c850; font-weight: bold; padding: 0 6px; }"
        "QStatusBar { background: #171a1f; }"
        "QStatusBar QLabel { padding: 0 6px; }"
        "QToolBar { background: #22262d; border-bottom: 1px solid #323842; spacing: 2px; }"
        "QToolBar QToolButton { padding: 3px 8px; }"
        "QTabBar::tab { padding: 4px 14px; }"));
}
