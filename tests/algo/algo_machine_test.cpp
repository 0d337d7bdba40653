// The notification machine transition by transition, illegal reports included; the step by
// state; and which reports are stale.
#include "algo_fixture.h"

using namespace algotest;

namespace {

// An order of 20 lots with 5 filled by earlier slices and a slice of 5 out in `state`.
CAlgoOrder withSlice(int state, double sliceFilled = 0) {
    CAlgoOrder o = order(tagAlgoSetting{}, kDirBuy, 20, 5);
    o.m_nRun = kRunRunning;
    o.m_nState = state;
    o.m_bSliceOpen = true;
    o.m_nSliceNo = 2;
    o.m_strSliceID = "7";
    o.m_dSliceVolume = 5;
    o.m_dSliceFilled = sliceFilled;
    return o;
}

tagBrokerOrder rec(int status, double filled = 0) {
    tagBrokerOrder r = brokerOrder("880001", "XX", kDirBuy, 5, 100);
    r.strOrderID = "7";
    r.strRemark = CAlgoOrder::tagOf(1, 2);
    r.nStatus = status;
    r.dFilledVolume = filled;
    return r;
}

}  // namespace

TEST(AlgoMachine, EveryTransition) {
    struct Case {
        int state, status;
        double recordFilled;
        int newState;
        double filled;        // the order's filled quantity afterwards
        bool sliceOut;
        const char* message;  // "" when not checked
    } cases[] = {
        // 1 发送中
        {1, 1, 0, 2, 5, true, "已报"},
        {1, 2, 2, 4, 7, true, "部分成交"},
        {1, 3, 5, 0, 10, false, ""},
        {1, 6, 3, 0, 8, false, ""},
        {1, 4, 0, 0, 5, false, ""},
        {1, 8, 1, 0, 6, false, ""},
        {1, 11, 0, 1, 5, true, "发送中..."},
        {1, 7, 0, 99, 5, true, "算法单委托发送后续状态出错，新状态=7"},
        // 2 委托已报
        {2, 3, 5, 0, 10, false, ""},
        {2, 6, 2, 0, 7, false, ""},
        {2, 4, 0, 0, 5, false, ""},
        {2, 1, 0, 2, 5, true, "已报"},
        {2, 2, 1, 2, 6, true, "部分成交"},
        {2, 5, 0, 99, 5, true, "算法单外部撤单或过期！,新状态=5"},
        {2, 11, 0, 99, 5, true, "算法单外部撤单或过期！,新状态=11"},
        // 3 撤单中
        {3, 4, 0, 0, 5, false, ""},
        {3, 3, 5, 0, 10, false, ""},  // the fill won the race
        {3, 6, 4, 0, 9, false, ""},
        {3, 2, 1, 4, 6, true, "部分成交"},
        {3, 1, 0, 3, 5, true, "已报"},
        {3, 7, 0, 3, 5, true, "撤单中..."},
        {3, 5, 0, 99, 5, true, "算法单撤单处理失败，请手动处理,新状态=5"},
        // 4 部分成交 (2 of 5 filled)
        {4, 3, 5, 0, 10, false, ""},
        {4, 6, 3, 0, 8, false, ""},
        {4, 2, 4, 4, 9, true, "部分成交"},
        {4, 4, 2, 99, 7, true, "算法单部分成交单后续状态处理失败，请手动处理,新状态=4"},
        {4, 1, 2, 99, 7, true, "算法单部分成交单后续状态处理失败，请手动处理,新状态=1"},
    };
    for (const auto& c : cases) {
        CAlgoOrder o = withSlice(c.state, c.state == 4 ? 2 : 0);
        EXPECT_TRUE(o.onNotification(rec(c.status, c.recordFilled)));
        const std::string at = std::to_string(c.state) + " + " + std::to_string(c.status);
        EXPECT_EQ(o.m_nState, c.newState) << at;
        EXPECT_DOUBLE_EQ(o.filled(), c.filled) << at;
        EXPECT_EQ(o.sliceOut(), c.sliceOut) << at;
        if (*c.message) {
            EXPECT_EQ(o.m_strMessage, c.message) << at;
        }
    }
    // No slice working: reports change nothing.
    for (int state : {0, 99}) {
        CAlgoOrder o = withSlice(state);
        EXPECT_FALSE(o.onNotification(rec(3, 5)));
        EXPECT_EQ(o.m_nState, state);
    }
}

TEST(AlgoMachine, StepByState) {
    struct Case {
        const char* what;
        int state, run;
        bool sliceOut, lookup;
        const char* id;
        std::int64_t sentAgo, cancelAgo;
        AlgoAction expected;
    } cases[] = {
        {"interval running", 0, kRunRunning, false, false, "", 4999, -1, AlgoAction::None},
        {"interval over", 0, kRunRunning, false, false, "", 5000, -1, AlgoAction::SendSlice},
        {"paused", 0, kRunPaused, false, false, "", 9999, -1, AlgoAction::None},
        {"cancelled", 0, kRunCancelled, false, false, "", 9999, -1, AlgoAction::None},
        {"stopped", 99, kRunRunning, true, false, "7", 9999, -1, AlgoAction::None},
        {"sent, no id", 1, kRunRunning, true, false, "", 9999, -1, AlgoAction::None},
        {"sent, overdue", 1, kRunRunning, true, false, "7", 5000, -1, AlgoAction::QuerySlice},
        {"queued, waiting", 2, kRunRunning, true, false, "7", 4999, -1, AlgoAction::None},
        {"queued, overdue", 2, kRunRunning, true, false, "7", 5000, -1, AlgoAction::QuerySlice},
        {"part filled, overdue", 4, kRunRunning, true, false, "7", 5000, -1, AlgoAction::QuerySlice},
        {"cancel fresh", 3, kRunRunning, true, false, "7", 9999, 4999, AlgoAction::None},
        {"cancel repeat", 3, kRunRunning, true, false, "7", 9999, 5000, AlgoAction::QuerySlice},
        {"cancelled, slice out", 2, kRunCancelled, true, false, "7", 10, -1, AlgoAction::QuerySlice},
        {"paused, slice out", 2, kRunPaused, true, false, "7", 9999, -1, AlgoAction::None},
        {"look up by id", 2, kRunRunning, true, true, "7", 10, -1, AlgoAction::QuerySlice},
        {"look up by tag", 1, kRunRunning, true, true, "", 10, -1, AlgoAction::FindSlice},
    };
    const std::uint64_t now = 100'000;
    for (const auto& c : cases) {
        CAlgoOrder o = withSlice(c.state);
        o.m_nRun = c.run;
        o.m_bSliceOpen = c.sliceOut;
        o.m_bNeedsLookup = c.lookup;
        o.m_strSliceID = c.id;
        o.m_nIntervalMs = 5000;
        o.m_tSend = static_cast<std::int64_t>(now) - c.sentAgo;
        o.m_tCancel = c.cancelAgo < 0 ? -1 : static_cast<std::int64_t>(now) - c.cancelAgo;
        EXPECT_EQ(o.step(now), c.expected) << c.what;
    }
}

TEST(AlgoMachine, StaleReportsAreDropped) {
    struct Case {
        const char* what;
        std::vector<std::pair<int, double>> reports;  // status, filled
        int state;
        double filled;
    } cases[] = {
        {"late 已报 after a partial fill", {{2, 2}, {1, 0}}, kAlgoPartFilled, 7},
        {"late 发送中 after 已报", {{1, 0}, {11, 0}}, kAlgoQueued, 5},
        {"duplicated partial fill", {{2, 2}, {2, 2}, {2, 3}}, kAlgoPartFilled, 8},
        {"a partial fill already known while cancelling", {{2, 2}}, kAlgoCancelling, 7},
    };
    for (const auto& c : cases) {
        CAlgoOrder o = withSlice(kAlgoSending);
        if (c.state == kAlgoCancelling) {
            // The query saw the partial fill, then the cancel went out; the report comes late.
            o.m_nState = kAlgoQueued;
            o.lookupAnswered(true, rec(2, 2), 100);
            o.cancelRequested(100);
        }
        for (auto [status, filled] : c.reports) o.accept(rec(status, filled));
        EXPECT_EQ(o.m_nState, c.state) << c.what;
        EXPECT_DOUBLE_EQ(o.filled(), c.filled) << c.what;
    }
}

TEST(AlgoMachine, ReportsMatchTheSliceNowOut) {
    CAlgoOrder o = withSlice(kAlgoQueued);
    o.m_nSerial = 1;
    struct Case {
        const char* remark;
        const char* id;
        bool matches;
    } cases[] = {
        {"算法|1|2", "7", true},
        {"算法|1|1", "7", false},   // an earlier slice
        {"算法|2|2", "7", false},   // another order
        {"算法|1|2", "8", false},   // another identifier
        {"算法|1|2x", "7", false},  // not a tag
        {"舵手", "7", false},
    };
    for (const auto& c : cases) {
        tagBrokerOrder r = rec(1);
        r.strRemark = c.remark;
        r.strOrderID = c.id;
        EXPECT_EQ(o.matches(r), c.matches) << c.remark << " " << c.id;
    }
    o.m_strSliceID.clear();  // not named yet: any identifier of the right tag
    EXPECT_TRUE(o.matches(rec(1)));
}
