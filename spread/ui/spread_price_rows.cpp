#include "spread/ui/spread_price_rows.h"

#include <QColor>
#include <QFont>
#include <QGridLayout>
#include <QLabel>
#include <QPalette>

#include "spread/manual_spread_strings.h"

std::array<QLabel*, 3> addSpreadPriceRows(QGridLayout* grid, QWidget* parent, int minWidth) {
    namespace t = manual_spread_text;
    const char* titles[] = {t::kRowAsk, t::kRowBid, t::kRowLast};
    const QColor colours[] = {QColor(0xd0, 0x21, 0x21), QColor(0x1a, 0x9a, 0x3a), QColor()};
    std::array<QLabel*, 3> rows{};
    for (int r = 0; r < 3; ++r) {
        grid->addWidget(new QLabel(QString::fromUtf8(titles[r]), parent), r, 0);
        auto* value = new QLabel(parent);
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        value->setMinimumWidth(minWidth);
        QFont f = value->font();
        f.setBold(true);
        f.setPointSizeF(f.pointSizeF() * 1.15);
        value->setFont(f);
        if (colours[r].isValid()) {
            QPalette p = value->palette();
            p.setColor(QPalette::WindowText, colours[r]);
            value->setPalette(p);
        }
        grid->addWidget(value, r, 1);
        rows[r] = value;
    }
    return rows;
}
