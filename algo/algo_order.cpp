#include "algo/algo_order.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <ctime>

#include "algo/algo_strings.h"
#include "host/clock.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "host/price.h"
#include "host/trading_session.h"

namespace {

constexpr double kVolEps = 1e-9;
constexpr std::int64_t kDayMs = 24LL * 3600 * 1000;

bool elapsed(std::uint64_t now, std::int64_t since, std::int64_t span) {
    return since < 0 || static_cast<std::int64_t>(now) - since >= span;
}

bool isFinalStatus(int s) {
    return s == kOrderFilled || s == kOrderCancelled || s == kOrderRejected ||
           s == kOrderPartCancelled || s == kOrderExpired;
}

bool isWorkingStatus(int s) {
    return s == kOrderQueued || s == kOrderPartFilled;
}

// Where a status lies in an order's life: sending, queued, partly filled, cancelling, over.
int statusRank(int s) {
    switch (s) {
        case kOrderSending:
        case kOrderWaitTrigger:
            return 0;
        case kOrderQueued:
            return 1;
        case kOrderPartFilled:
            return 2;
        case kOrderCancelling:
            return 3;
        default:
            return 4;
    }
}

std::string printfText(const char* format, int a) {
    char buf[256];
    std::snprintf(buf, sizeof buf, format, a);
    return buf;
}

}  // namespace

int algoRand(std::uint64_t seedTick) {
    // srand(seed); rand(): one step of the classic generator from the seed.
    const std::uint32_t next = static_cast<std::uint32_t>(seedTick) * 214013u + 2531011u;
    return static_cast<int>((next >> 16) & 0x7FFF);
}

std::int64_t randomise(std::int64_t v, std::int64_t percent, std::uint64_t tick) {
    const std::int64_t d = v * percent / 100;
    if (d <= 0) return v;
    return v - d + (static_cast<std::int64_t>(algoRand(tick)) * 2 * d) / 32767;
}

std::int64_t sessionMsBetween(int exchangeId, std::int64_t fromMs, std::int64_t toMs) {
    if (toMs <= fromMs) return 0;
    const session::ExchangeSessions* ex = session::exchangeSessions(exchangeId);
    if (!ex) return toMs - fromMs;
    std::tm tm = toLocalTm(fromMs / 1000);
    tm.tm_hour = tm.tm_min = tm.tm_sec = 0;
    tm.tm_isdst = -1;
    std::int64_t total = 0;
    // Day by day from the local midnight before `fromMs`; a bounded walk (a year at most).
    for (int day = 0; day < 400; ++day) {
        std::tm d = tm;
        d.tm_mday += day;
        const std::int64_t midnight = fromLocalTm(d) * 1000;
        if (midnight >= toMs) break;
        for (const session::SessionWindow& w : ex->trading) {
            const std::int64_t a = std::max(fromMs, midnight + w.startMs);
            const std::int64_t b = std::min(toMs, midnight + w.endMs);
            if (b > a) total += b - a;
        }
    }
    return total;
}

CAlgoOrder::CAlgoOrder(int serial, const tagBrokerOrder& order, const tagAlgoSetting& setting,
                       const IModuleFutureTrader::ISpecDetailValue& detail)
    : m_dTotal(std::floor(order.dVolume + kVolEps)),
      m_nSerial(serial),
      m_setting(setting),
      m_strAccountID(order.strAccountID),
      m_strBrokerID(order.strBrokerID),
      m_symbol{static_cast<std::uint16_t>(order.nExchangeID), order.strCode},
      m_strSymbolText(order.strSymbolText.empty() ? order.strCode : order.strSymbolText),
      m_nMinMove(detail.nMinMove),
      m_dPriceUnit(detail.fPriceUnit),
      m_nDirection(order.nDirection),
      m_nOpenClose(order.nOpenClose),
      m_nHedge(order.nHedge),
      m_dOrderPrice(order.dPrice),
      m_strMessage(algo_text::kMsgCreated) {}

double CAlgoOrder::tick() const {
    return price::pointOnGrid(m_nMinMove, static_cast<float>(m_dPriceUnit));
}

int CAlgoOrder::remaining() const {
    const double r = std::floor(m_dTotal - filled() + kVolEps);
    return r > 0 ? static_cast<int>(std::min(r, 1e9)) : 0;
}

AlgoRangeState CAlgoOrder::ranges(double last) const {
    AlgoRangeState r;
    const double t = tick();
    if (!isPricePresent(last) || !isPricePresent(m_dBasePrice) || !(t > 0)) return r;
    // Distance from the base price in ticks, positive when the price moved against a buy.
    double ticks = (last - m_dBasePrice) / t;
    if (m_nDirection != kDirBuy) ticks = -ticks;
    const bool stopCrossed = m_setting.nStopRange > 0 && ticks >= m_setting.nStopRange - 1e-6;
    const bool limitCrossed = m_setting.nLimitRange >= 1 && ticks <= -m_setting.nLimitRange + 1e-6;
    if (stopCrossed) (m_setting.nOutStopRange == 0 ? r.blocked : r.fast) = true;
    if (limitCrossed) (m_setting.nOutLimitRange == 0 ? r.blocked : r.fast) = true;
    return r;
}

int CAlgoOrder::sliceSize(const IModuleFutureTrader::ITickEx& q, std::uint64_t tick) const {
    const std::int64_t rem = remaining();
    if (rem <= 0) return 0;
    if (m_nPacing == kPaceImmediate) return static_cast<int>(rem);
    if (ranges(q.dLast).blocked) return 0;
    std::int64_t size;
    if (m_setting.nLotType == 1) {
        const double vol = m_nDirection == kDirBuy ? q.dAskVol : q.dBidVol;
        const double v = isPricePresent(vol) ? m_setting.nLotRatio * vol * 0.01 : 0;
        size = v > 0 ? static_cast<std::int64_t>(std::min(v, 1e9)) : 0;
    } else if (m_setting.nLotRandom != 0) {
        size = randomise(m_setting.nLotSingle, m_setting.nLotRandom, tick);
    } else {
        size = m_setting.nLotSingle;
    }
    if (m_nPacing == kPaceUrgent) size *= 2;
    return static_cast<int>(std::clamp<std::int64_t>(size, 0, rem));
}

double CAlgoOrder::slicePrice(const IModuleFutureTrader::ITickEx& q) const {
    const int offset = m_nPacing >= kPaceFast ? 2 * m_nPacing
                                              : std::clamp(m_setting.nPriceType, -10, 10);
    const double t = tick();
    double p;
    if (m_nDirection == kDirBuy)
        p = isPricePresent(q.dAsk) ? q.dAsk + offset * t : q.dLast;
    else
        p = isPricePresent(q.dBid) ? q.dBid - offset * t : q.dLast;
    if (!isPricePresent(p)) return 0;
    if (isPricePresent(q.dLowerLimit) && p < q.dLowerLimit) p = q.dLowerLimit;
    if (isPricePresent(q.dUpperLimit) && p > q.dUpperLimit) p = q.dUpperLimit;
    return price::roundForDirection(p, m_nDirection, m_nMinMove, static_cast<float>(m_dPriceUnit));
}

std::int64_t CAlgoOrder::sliceInterval(const IModuleFutureTrader::ITickEx& q, int size,
                                       std::int64_t nowMs, std::uint64_t tick) const {
    if (m_nPacing != kPaceNormal || ranges(q.dLast).fast) return kFastestIntervalMs;
    if (m_setting.nTimeType != 0) {
        const std::int64_t start = m_tStartMs > 0 ? m_tStartMs : nowMs;
        const std::int64_t spent = m_setting.nTimeSession != 0
                                       ? sessionMsBetween(m_symbol.wExchangeID, start, nowMs)
                                       : nowMs - start;
        const std::int64_t remSec =
            std::max<std::int64_t>(0, std::int64_t{m_setting.nTimeTotal} * 1000 - spent) / 1000;
        const std::int64_t remQty = std::max(1, remaining());
        return std::max(kFastestIntervalMs, remSec * 1000 / remQty * size);
    }
    return std::max<std::int64_t>(
        0, randomise(std::int64_t{m_setting.nTimeInterval} * 1000, m_setting.nTimeRadom, tick));
}

AlgoAction CAlgoOrder::step(std::uint64_t tick) const {
    if (m_nState == kAlgoError) return AlgoAction::None;
    const bool working = m_nRun == kRunRunning && !finished();
    const bool winding = (m_nRun == kRunCancelled || m_nRun == kRunDeleted) && m_bSliceOpen;
    if (!working && !winding) return AlgoAction::None;
    if (m_bNeedsLookup) return m_strSliceID.empty() ? AlgoAction::FindSlice : AlgoAction::QuerySlice;
    switch (m_nState) {
        case kAlgoNormal:
            return working && elapsed(tick, m_tSend, m_nIntervalMs) ? AlgoAction::SendSlice
                                                                    : AlgoAction::None;
        case kAlgoSending:
        case kAlgoQueued:
        case kAlgoPartFilled:
            if (m_strSliceID.empty()) return AlgoAction::None;
            return winding || elapsed(tick, m_tSend, m_nIntervalMs) ? AlgoAction::QuerySlice
                                                                    : AlgoAction::None;
        case kAlgoCancelling:
            if (m_strSliceID.empty()) return AlgoAction::None;
            return elapsed(tick, m_tCancel, kCancelRepeatMs) ? AlgoAction::QuerySlice
                                                             : AlgoAction::None;
        default:
            return AlgoAction::None;
    }
}

AlgoSlice CAlgoOrder::planSlice(const IModuleFutureTrader::ITickEx& q, std::int64_t nowMs,
                                std::uint64_t tick) const {
    AlgoSlice s;
    s.volume = sliceSize(q, tick);
    if (s.volume < 1) return AlgoSlice{};
    s.price = slicePrice(q);
    if (!isPricePresent(s.price)) return AlgoSlice{};
    s.intervalMs = sliceInterval(q, s.volume, nowMs, tick);
    return s;
}

tagBrokerOrder CAlgoOrder::sliceOrder(const AlgoSlice& s, std::int64_t nowSec) const {
    tagBrokerOrder o;
    o.strAccountID = m_strAccountID;
    o.strBrokerID = m_strBrokerID;
    o.nExchangeID = m_symbol.wExchangeID;
    o.strSymbolText = m_strSymbolText;
    o.strCode = m_symbol.strCode;
    o.nDirection = m_nDirection;
    o.tCreateTime = nowSec;
    o.dVolume = s.volume;
    o.dPrice = s.price;
    o.nOpenClose = m_nOpenClose;
    o.nHedge = m_nHedge;
    o.strRemark = tagOf(m_nSerial, m_nSliceNo + 1);
    return o;
}

void CAlgoOrder::sliceSent(const AlgoSlice& s, const tagBrokerOrder& sent, int result,
                           std::uint64_t tick) {
    ++m_nSliceNo;
    m_bSliceOpen = true;
    m_bNeedsLookup = false;
    m_dSliceVolume = s.volume;
    m_dSliceFilled = 0;
    m_dSlicePrice = s.price;
    m_tSend = static_cast<std::int64_t>(tick);
    m_nIntervalMs = s.intervalMs;
    m_tCancel = -1;
    m_nSeenRank = 0;
    m_strSliceID = sent.strOrderID;
    m_nState = kAlgoSending;
    if (result != 0) {
        char buf[160];
        std::snprintf(buf, sizeof buf, algo_text::kMsgSliceSent, m_nSliceNo, s.volume,
                      number_text::format(s.price).c_str());
        m_strMessage = buf;
        return;
    }
    char buf[320];
    std::snprintf(buf, sizeof buf, algo_text::kMsgSliceRefused, m_nSliceNo,
                  sent.strStatusMsg.c_str());
    // Booked as refused: its reports follow (or a query finds it). Not booked: it is over.
    if (m_strSliceID.empty()) closeSlice(0);
    m_strMessage = buf;
}

void CAlgoOrder::cancelRequested(std::uint64_t tick) {
    m_tCancel = static_cast<std::int64_t>(tick);
    m_nState = kAlgoCancelling;
    char buf[96];
    std::snprintf(buf, sizeof buf, algo_text::kMsgCancelSent, m_nSliceNo);
    m_strMessage = buf;
}

bool CAlgoOrder::lookupAnswered(bool found, const tagBrokerOrder& record, std::uint64_t tick) {
    m_nLastStatus = -1;
    if (!found) {
        // A search of the day's orders found no slice with this tag: it never reached the host.
        if (m_bNeedsLookup && m_strSliceID.empty()) {
            closeSlice(0);
            m_strMessage = algo_text::kMsgRestored;
            return true;
        }
        if (m_bNeedsLookup) m_strMessage = printfText(algo_text::kMsgLookupFailed, m_nSliceNo);
        return false;
    }
    m_nLastStatus = record.nStatus;
    if (m_strSliceID.empty()) m_strSliceID = record.strOrderID;
    if (!m_bNeedsLookup) return accept(record);
    // Recovery: the slice's fate is read from the host as it stands now.
    m_bNeedsLookup = false;
    m_nSeenRank = statusRank(record.nStatus);
    const int st = record.nStatus;
    const double f = std::clamp(record.dFilledVolume, 0.0, m_dSliceVolume);
    if (isFinalStatus(st)) {
        closeSlice(st == kOrderFilled ? m_dSliceVolume : f);
    } else {
        m_dSliceFilled = std::max(m_dSliceFilled, f);
        m_nState = st == kOrderCancelling  ? kAlgoCancelling
                   : st == kOrderPartFilled ? kAlgoPartFilled
                   : st == kOrderQueued     ? kAlgoQueued
                                            : kAlgoSending;
        if (m_nState == kAlgoCancelling) m_tCancel = static_cast<std::int64_t>(tick);
    }
    m_strMessage = algo_text::kMsgRestored;
    return true;
}

bool CAlgoOrder::wantsCancel(std::uint64_t tick) const {
    if (!isWorkingStatus(m_nLastStatus) || m_strSliceID.empty()) return false;
    const bool winding = m_nRun == kRunCancelled || m_nRun == kRunDeleted;
    if (m_nState == kAlgoQueued || m_nState == kAlgoPartFilled)
        return winding || elapsed(tick, m_tSend, m_nIntervalMs);
    if (m_nState == kAlgoCancelling) return elapsed(tick, m_tCancel, kCancelRepeatMs);
    return false;
}

bool CAlgoOrder::onNotification(const tagBrokerOrder& r) {
    const int st = r.nStatus;
    const double f = std::clamp(r.dFilledVolume, 0.0, m_dSliceVolume);
    const auto text = [&] {
        m_strMessage = std::string(codes::orderStatusText(st));
        if (!r.strStatusMsg.empty()) m_strMessage += "：" + r.strStatusMsg;
    };
    const auto partFill = [&] { m_dSliceFilled = std::max(m_dSliceFilled, f); };
    const auto filled = [&] { closeSlice(st == kOrderFilled ? m_dSliceVolume : f); };
    const auto over = [&] { closeSlice(f); };
    switch (m_nState) {
        case kAlgoSending:
            if (st == kOrderQueued) {
                m_nState = kAlgoQueued;
                text();
            } else if (st == kOrderPartFilled) {
                partFill();
                m_nState = kAlgoPartFilled;
                text();
            } else if (st == kOrderFilled || st == kOrderPartCancelled) {
                filled();
            } else if (st == kOrderCancelled || st == kOrderRejected || st == kOrderExpired) {
                over();
                if (!r.strStatusMsg.empty()) m_strMessage += "：" + r.strStatusMsg;
            } else if (st == kOrderSending) {
                text();  // still on its way: the state already says so
            } else {
                fail(algo_text::kErrAfterSend, st);
            }
            return true;
        case kAlgoQueued:
            if (st == kOrderFilled || st == kOrderPartCancelled) {
                filled();
            } else if (st == kOrderCancelled) {
                over();
            } else if (st == kOrderQueued || st == kOrderPartFilled) {
                partFill();
                text();
            } else {
                fail(algo_text::kErrQueued, st);
            }
            return true;
        case kAlgoCancelling:
            if (st == kOrderCancelled) {
                over();
            } else if (st == kOrderFilled || st == kOrderPartCancelled) {
                filled();
            } else if (st == kOrderPartFilled) {
                partFill();
                m_nState = kAlgoPartFilled;
                text();
            } else if (st == kOrderQueued || st == kOrderCancelling) {
                text();
            } else {
                fail(algo_text::kErrCancel, st);
            }
            return true;
        case kAlgoPartFilled:
            if (st == kOrderFilled || st == kOrderPartCancelled) {
                filled();
            } else if (st == kOrderPartFilled) {
                partFill();
                text();
            } else {
                fail(algo_text::kErrPartFilled, st);
            }
            return true;
        default:
            return false;
    }
}

bool CAlgoOrder::isStale(const tagBrokerOrder& r) const {
    const int rank = statusRank(r.nStatus);
    if (rank < m_nSeenRank) return true;
    return r.nStatus == kOrderPartFilled && m_nSeenRank == 2 &&
           r.dFilledVolume <= m_dSliceFilled + kVolEps;
}

bool CAlgoOrder::accept(const tagBrokerOrder& r) {
    if (isStale(r)) return false;
    m_nSeenRank = std::max(m_nSeenRank, statusRank(r.nStatus));
    return onNotification(r);
}

bool CAlgoOrder::matches(const tagBrokerOrder& r) const {
    int serial = 0, sliceNo = 0;
    if (!m_bSliceOpen || !parseTag(r.strRemark, serial, sliceNo)) return false;
    if (serial != m_nSerial || sliceNo != m_nSliceNo || r.strAccountID != m_strAccountID)
        return false;
    return m_strSliceID.empty() || r.strOrderID == m_strSliceID;
}

void CAlgoOrder::closeSlice(double filledVolume) {
    m_dDoneFilled += std::clamp(filledVolume, 0.0, m_dSliceVolume);
    m_dSliceFilled = 0;
    m_bSliceOpen = false;
    m_bNeedsLookup = false;
    m_nState = kAlgoNormal;
    char buf[96];
    std::snprintf(buf, sizeof buf, algo_text::kMsgSliceDone, m_nSliceNo,
                  static_cast<int>(std::floor(filledVolume + kVolEps)));
    m_strMessage = buf;
}

void CAlgoOrder::fail(const char* format, int status) {
    m_nState = kAlgoError;
    m_strMessage = printfText(format, status);
}

void CAlgoOrder::start(double basePrice, std::int64_t nowMs) {
    if (m_nRun != kRunPaused) return;
    if (!isPricePresent(m_dBasePrice)) m_dBasePrice = basePrice;
    if (m_tStartMs <= 0) m_tStartMs = nowMs;
    m_nRun = kRunRunning;
}

void CAlgoOrder::pause() {
    if (m_nRun == kRunRunning) m_nRun = kRunPaused;
}

void CAlgoOrder::cancel() {
    if (m_nRun == kRunRunning || m_nRun == kRunPaused) m_nRun = kRunCancelled;
}

void CAlgoOrder::markDeleted() {
    m_nRun = kRunDeleted;
}

void CAlgoOrder::reset() {
    if (m_nState != kAlgoError) return;
    m_nState = kAlgoNormal;
    m_bNeedsLookup = m_bSliceOpen;
    m_tCancel = -1;
}

void CAlgoOrder::setPacing(int pacing) {
    m_nPacing = std::clamp(pacing, 0, 3);
}

void CAlgoOrder::restored() {
    if (m_nRun == kRunRunning) m_nRun = kRunPaused;
    m_bNeedsLookup = m_bSliceOpen;
    m_tSend = -1;
    m_tCancel = -1;
}

std::string CAlgoOrder::tag() const {
    return tagOf(m_nSerial, m_nSliceNo);
}

std::string CAlgoOrder::tagOf(int serial, int sliceNo) {
    char buf[64];
    std::snprintf(buf, sizeof buf, algo_text::kSliceTag, serial, sliceNo);
    return buf;
}

bool CAlgoOrder::parseTag(const std::string& remark, int& serial, int& sliceNo) {
    const std::string_view prefix = algo_text::kSliceTagPrefix;
    if (remark.size() <= prefix.size() || remark.compare(0, prefix.size(), prefix) != 0)
        return false;
    const char* p = remark.c_str() + prefix.size();
    char* end = nullptr;
    const long a = std::strtol(p, &end, 10);
    if (end == p || *end != '|' || a <= 0 || a > 0x7FFFFFFF) return false;
    p = end + 1;
    const long b = std::strtol(p, &end, 10);
    if (end == p || *end != '\0' || b <= 0 || b > 0x7FFFFFFF) return false;
    serial = static_cast<int>(a);
    sliceNo = static_cast<int>(b);
    return true;
}

const char* CAlgoOrder::stateText() const {
    if (finished() && !m_bSliceOpen) return algo_text::kFinished;
    switch (m_nState) {
        case kAlgoNormal:
            return algo_text::kStateNormal;
        case kAlgoSending:
            return algo_text::kStateSending;
        case kAlgoQueued:
            return algo_text::kStateQueued;
        case kAlgoCancelling:
            return algo_text::kStateCancelling;
        case kAlgoPartFilled:
            return algo_text::kStatePartFilled;
        default:
            return algo_text::kStateError;
    }
}

const char* CAlgoOrder::runText() const {
    if (finished() && !m_bSliceOpen && m_nRun != kRunDeleted) return "";
    switch (m_nRun) {
        case kRunRunning:
            return algo_text::kRunTextRunning;
        case kRunCancelled:
            return algo_text::kRunTextCancelled;
        case kRunDeleted:
            return algo_text::kRunTextDeleted;
        default:
            return algo_text::kRunTextPaused;
    }
}
