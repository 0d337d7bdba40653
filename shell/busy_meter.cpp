#include "shell/busy_meter.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <time.h>
#endif

std::int64_t BusyMeter::threadCpuNs() {
#if defined(_WIN32)
    FILETIME creation, exit, kernel, user;
    if (!GetThreadTimes(GetCurrentThread(), &creation, &exit, &kernel, &user)) return 0;
    auto ns = [](const FILETIME& f) {
        return ((static_cast<std::int64_t>(f.dwHighDateTime) << 32) | f.dwLowDateTime) * 100;
    };
    return ns(kernel) + ns(user);
#else
    timespec ts{};
    if (clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts) != 0) return 0;
    return static_cast<std::int64_t>(ts.tv_sec) * 1000000000 + ts.tv_nsec;
#endif
}

void BusyMeter::start() {
    m_running = true;
    m_handlerNs = 0;
    m_handlerCalls = 0;
    m_cpuStartNs = threadCpuNs();
    m_wall.start();
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
    r.wallMs = static_cast<double>(m_wall.nsecsElapsed()) / 1e6;
    r.handlerMs = static_cast<double>(m_handlerNs) / 1e6;
    r.busyMs = static_cast<double>(threadCpuNs() - m_cpuStartNs) / 1e6;
    r.handlerCalls = m_handlerCalls;
    return r;
}
