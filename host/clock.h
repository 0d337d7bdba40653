// The clock seam. Core code never reads the system clock: it asks an IClock for calendar
// seconds, a millisecond tick count and local wall-clock time, so tests and replays run on
// virtual time.
#pragma once

#include <atomic>
#include <cstdint>
#include <ctime>
#include <string>

class IClock {
public:
    virtual ~IClock() = default;
    // Calendar time in milliseconds since 1970 (UTC).
    virtual std::int64_t nowMs() const = 0;
    // Monotonic milliseconds, for intervals and order tags.
    virtual std::uint64_t tickCount() const = 0;

    std::int64_t now() const { return nowMs() / 1000; }
    // Local broken-down time of now().
    std::tm localNow() const;
};

// Local broken-down time of calendar seconds t.
std::tm toLocalTm(std::int64_t t);
// Calendar seconds of a local broken-down time (tm_isdst left to the library).
std::int64_t fromLocalTm(std::tm tm);
// "%Y-%m-%d %H:%M:%S" of calendar seconds in local time.
std::string formatDateTime(std::int64_t t);
// Calendar seconds of 23:59:59 local time on the day of t.
std::int64_t endOfDay(std::int64_t t);

// The real clock, optionally shifted by a fixed offset so a whole process can pretend it is
// another time of day (the shell's --market-time).
class SystemClock final : public IClock {
public:
    std::int64_t nowMs() const override;
    std::uint64_t tickCount() const override;
    void setOffsetMs(std::int64_t offset) { m_offsetMs.store(offset); }
    std::int64_t offsetMs() const { return m_offsetMs.load(); }

    // The process-wide instance.
    static SystemClock& instance();

private:
    std::atomic<std::int64_t> m_offsetMs{0};
};

// A clock that only moves when told to. Not thread-safe by design beyond atomic reads.
class ManualClock final : public IClock {
public:
    explicit ManualClock(std::int64_t startMs = 0) : m_nowMs(startMs) {}
    std::int64_t nowMs() const override { return m_nowMs.load(); }
    std::uint64_t tickCount() const override { return m_tick.load(); }
    void advanceMs(std::int64_t ms) {
        m_nowMs += ms;
        m_tick += static_cast<std::uint64_t>(ms);
    }
    void setNowMs(std::int64_t ms) { m_nowMs = ms; }

private:
    std::atomic<std::int64_t> m_nowMs;
    std::atomic<std::uint64_t> m_tick{1000};
};
