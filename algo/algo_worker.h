// CAlgoWorker: the thread that drives the algo engine. It sets its run flag, then loops: one
// engine pass (the engine locks its recursive mutex, steps every order in key order and
// unlocks), count the pass, every 1000 passes the engine's periodic save (and in between a
// save when a report changed something), then sleep for the period (500 ms). Stopping clears
// the run flag and wakes the sleep; the loop ends after the current pass.
//
// The worker holds no trading rule: the step is the engine's. Owned by the algo centre; the
// destructor stops and joins.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

class CAlgoEngine;

class CAlgoWorker {
public:
    static constexpr std::chrono::milliseconds kPeriod{500};

    explicit CAlgoWorker(CAlgoEngine& engine, std::chrono::milliseconds period = kPeriod);
    ~CAlgoWorker();
    CAlgoWorker(const CAlgoWorker&) = delete;
    CAlgoWorker& operator=(const CAlgoWorker&) = delete;

    void start();
    // Clears the run flag and waits for the loop to end.
    void stop();
    bool running() const { return m_run.load(); }
    std::uint64_t passes() const { return m_passes.load(); }

private:
    void loop(std::stop_token token);

    CAlgoEngine& m_engine;
    std::chrono::milliseconds m_period;
    std::atomic<bool> m_run{false};
    std::atomic<std::uint64_t> m_passes{0};
    std::mutex m_sleepMutex;
    std::condition_variable_any m_wake;
    std::jthread m_thread;
};
