#include "algo/algo_worker.h"

#include "algo/algo_engine.h"

CAlgoWorker::CAlgoWorker(CAlgoEngine& engine, std::chrono::milliseconds period)
    : m_engine(engine), m_period(period) {}

CAlgoWorker::~CAlgoWorker() {
    stop();
}

void CAlgoWorker::start() {
    if (m_thread.joinable()) return;
    m_run = true;
    m_thread = std::jthread([this](std::stop_token token) { loop(token); });
}

void CAlgoWorker::stop() {
    m_run = false;
    if (!m_thread.joinable()) return;
    m_thread.request_stop();
    m_wake.notify_all();
    m_thread.join();
    m_thread = std::jthread();
}

void CAlgoWorker::loop(std::stop_token token) {
    while (m_run.load() && !token.stop_requested()) {
        m_engine.pass();
        const std::uint64_t n = m_passes.fetch_add(1) + 1;
        if (n % CAlgoEngine::kSaveEvery == 0)
            m_engine.periodicSave();
        else
            m_engine.saveIfDirty();
        std::unique_lock lock(m_sleepMutex);
        m_wake.wait_for(lock, token, m_period, [] { return false; });
    }
}
