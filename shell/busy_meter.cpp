#include "shell/busy_meter.h"

#include <QAbstractEventDispatcher>
#include <QThread>

BusyMeter::BusyMeter(QObject* parent) : QObject(parent) {
    if (auto* d = QAbstractEventDispatcher::instance(QThread::currentThread())) {
        connect(d, &QAbstractEventDispatcher::aboutToBlock, this, &BusyMeter::onAboutToBlock);
        connect(d, &QAbstractEventDispatcher::awake, this, &BusyMeter::onAwake);
    }
}

void BusyMeter::start() {
    m_running = true;
    m_blockedNs = 0;
    m_handlerNs = 0;
    m_handlerCalls = 0;
    m_isBlocked = false;
    m_wall.start();
}

void BusyMeter::onAboutToBlock() {
    if (!m_running || m_isBlocked) return;
    m_isBlocked = true;
    m_blocked.start();
}

void BusyMeter::onAwake() {
    if (!m_running || !m_isBlocked) return;
    m_isBlocked = false;
    m_blockedNs += m_blocked.nsecsElapsed();
}

BusyMeter::Section::Section(BusyMeter& m) : m_meter(m), m_outer(m.m_depth++ == 0) {
    if (m_outer && m_meter.m_running) m_timer.start();
}

BusyMeter::Section::~Section() {
    --m_meter.m_depth;
    if (m_outer && m_meter.m_running && m_timer.isValid()) {
        m_meter.m_handlerNs += m_timer.nsecsElapsed();
        ++m_meter.m_handlerCalls;
    }
}

BusyMeter::Result BusyMeter::result() const {
    Result r;
    if (!m_running) return r;
    const std::int64_t wallNs = m_wall.nsecsElapsed();
    std::int64_t blockedNs = m_blockedNs;
    if (m_isBlocked) blockedNs += m_blocked.nsecsElapsed();
    r.wallMs = static_cast<double>(wallNs) / 1e6;
    r.handlerMs = static_cast<double>(m_handlerNs) / 1e6;
    r.busyMs = static_cast<double>(wallNs - blockedNs) / 1e6;
    r.handlerCalls = m_handlerCalls;
    return r;
}
