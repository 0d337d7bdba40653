// Small widget helpers the order ticket's frame and its immediate page share: UTF-8 text,
// captions and the price and point spins, so both halves of the window look alike.
#pragma once

#include <QDoubleSpinBox>
#include <QLabel>
#include <QLocale>
#include <QSpinBox>
#include <QString>
#include <string_view>

namespace ticket_ui {

inline constexpr double kMaxPrice = 1e9;

inline QString q(const char* s) {
    return QString::fromUtf8(s);
}
inline QString q(std::string_view s) {
    return QString::fromUtf8(s.data(), static_cast<int>(s.size()));
}

inline QLabel* caption(QWidget* parent, const char* text) { return new QLabel(q(text), parent); }

inline QDoubleSpinBox* priceSpin(QWidget* parent, const char* name) {
    auto* s = new QDoubleSpinBox(parent);
    s->setObjectName(name);
    s->setLocale(QLocale::c());
    s->setRange(0, kMaxPrice);
    s->setAlignment(Qt::AlignRight);
    s->setKeyboardTracking(true);
    s->setMinimumWidth(96);
    return s;
}

inline QSpinBox* pointSpin(QWidget* parent, const char* name) {
    auto* s = new QSpinBox(parent);
    s->setObjectName(name);
    s->setRange(0, 9999);
    s->setAlignment(Qt::AlignRight);
    s->setMaximumWidth(64);
    return s;
}

}  // namespace ticket_ui
