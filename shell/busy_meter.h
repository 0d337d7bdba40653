// BusyMeter: how much of the UI thread's wall time goes to work rather than waiting.
//
// Two numbers over one measuring window:
// - handler time: the desk's own timer handlers (event delivery into the add-in, quote
//   rounds, monitor refreshes), summed from scoped sections;
// - busy time: the CPU time the UI thread itself consumed, so painting, layout and
//   everything the add-in's windows do on that thread counts too; waiting does not.
// Owned by the desk window; UI thread only.
#pragma once

#include <QElapsedTimer>
#include <cstdint>

class BusyMeter {
public:
    BusyMeter() = default;

    // Starts (or restarts) a measuring window.
    void start();
    bool running() const { return m_running; }

    // A section of handler work; nests harmlessly (only the outermost counts).
    class Section {
    public:
        explicit Section(BusyMeter& m);
        ~Section();
        Section(const Section&) = delete;
        Section& operator=(const Section&) = delete;

    private:
        BusyMeter& m_meter;
        bool m_outer;
        QElapsedTimer m_timer;
    };

    struct Result {
        double wallMs = 0;
        double handlerMs = 0;
        double busyMs = 0;
        std::uint64_t handlerCalls = 0;
        double handlerShare() const { return wallMs > 0 ? handlerMs / wallMs : 0; }
        double busyShare() const { return wallMs > 0 ? busyMs / wallMs : 0; }
    };
    Result result() const;

    // CPU time of the calling thread, in nanoseconds (0 where the platform cannot say).
    static std::int64_t threadCpuNs();

private:
    bool m_running = false;
    QElapsedTimer m_wall;
    std::int64_t m_cpuStartNs = 0;
    std::int64_t m_handlerNs = 0;
    std::uint64_t m_handlerCalls = 0;
    int m_depth = 0;
};
