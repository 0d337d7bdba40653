#include "replay/replay_output.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <system_error>

#include "host/clock.h"
#include "host/codes.h"
#include "host/gbk_codec.h"
#include "host/number_text.h"

namespace replay {
namespace {

std::string fmt(const char* f, double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, f, v);
    return buf;
}

std::string money(double v) {
    return fmt("%.2f", v == 0 ? 0.0 : v);  // never "-0.00"
}

std::string timeText(std::int64_t sec) {
    return sec > 0 ? formatDateTime(sec) : std::string();
}

std::string timeMsText(std::int64_t ms) {
    char buf[8];
    std::snprintf(buf, sizeof buf, ".%03d", static_cast<int>(((ms % 1000) + 1000) % 1000));
    return formatDateTime(ms >= 0 ? ms / 1000 : (ms - 999) / 1000) + buf;
}

std::string priceText(const ReplayResult& r, const std::string& code, double v) {
    auto it = r.priceDecimals.find(code);
    return number_text::format(v, it == r.priceDecimals.end() ? -1 : it->second);
}

std::string cell(std::string s) {
    if (s.find_first_of(",\"\r\n") == std::string::npos) return s;
    std::string out = "\"";
    for (char c : s) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

void row(std::string& out, std::initializer_list<std::string> cells) {
    bool first = true;
    for (const auto& c : cells) {
        if (!first) out += ',';
        out += cell(c);
        first = false;
    }
    out += "\r\n";
}

std::string lots(double v) {
    return number_text::format(v, -1);
}

std::string xml(const std::string& s) {
    std::string out;
    for (char c : s) {
        if (c == '&') out += "&amp;";
        else if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else if (c == '"') out += "&quot;";
        else out += c;
    }
    return out;
}

bool writeGbk(const std::filesystem::path& path, const std::string& utf8, std::string& error) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    const std::string bytes = gbk::fromUtf8(utf8);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) error = "cannot write " + path.string();
    return static_cast<bool>(out);
}

}  // namespace

std::string summaryText(const ReplayResult& r, const ReplayOptions& o) {
    std::string s;
    s += "工具: " + o.tool + "\n";
    s += "行情: " + std::to_string(r.ticks) + " 笔, " + std::to_string(o.tickFiles.size()) +
         " 个文件, 跳过 " + std::to_string(r.skippedLines) + " 行\n";
    s += "时段: " + timeText(r.firstMs / 1000) + " 至 " + timeText(r.lastMs / 1000) + "\n";
    s += "委托: " + std::to_string(r.orders.size()) + "\n";
    s += "成交: " + std::to_string(r.fills.size()) + "\n";
    s += "回合: " + std::to_string(r.roundTrips) + "\n";
    s += "毛盈亏: " + money(r.grossPnl) + "\n";
    s += "手续费: " + money(r.commission) + "\n";
    s += "净盈亏: " + money(r.netPnl) + "\n";
    s += "最大回撤: " + money(r.maxDrawdown) + "\n";
    s += "最大持仓: " + lots(r.maxPosition) + "\n";
    for (const auto& line : r.holdings.lines) s += "工具持有: " + line + "\n";
    return s;
}

std::string ordersCsv(const ReplayResult& r) {
    std::string out;
    row(out, {"委托号", "报单时间", "更新时间", "帐户", "合约", "买卖", "开平", "价格", "数量",
              "成交量", "成交均价", "状态", "状态信息", "备注"});
    for (const auto& o : r.orders)
        row(out, {o.strOrderID, timeText(o.tCreateTime), timeText(o.tUpdateTime), o.strAccountID,
                  o.strCode, std::string(codes::directionText(o.nDirection)),
                  std::string(codes::openCloseText(o.nOpenClose)), priceText(r, o.strCode, o.dPrice),
                  lots(o.dVolume), lots(o.dFilledVolume),
                  o.dFilledVolume > 0 ? fmt("%.4f", o.dAvgPrice) : std::string(),
                  std::string(codes::orderStatusText(o.nStatus)), o.strStatusMsg, o.strRemark});
    return out;
}

std::string fillsCsv(const ReplayResult& r) {
    std::string out;
    row(out, {"成交号", "成交时间", "委托号", "帐户", "合约", "买卖", "开平", "价格", "数量",
              "备注"});
    for (const auto& f : r.fills)
        row(out, {f.strBargainNo, timeText(f.tTime), f.strContractNo, f.strAccountID, f.strCode,
                  std::string(codes::directionText(f.nDirection)),
                  std::string(codes::openCloseText(f.nOpenClose)), priceText(r, f.strCode, f.dPrice),
                  lots(f.dVolume), f.strRemark});
    return out;
}

std::string journalCsv(const ReplayResult& r, const std::vector<JournalEntry>& entries) {
    std::string out;
    row(out, {"时间", "工具", "窗口", "标签", "委托号", "帐户", "合约", "买卖", "开平", "价格",
              "数量", "结果", "原因", "数据"});
    for (const auto& e : entries) {
        std::string figures;
        for (const auto& f : e.figures) {
            if (!figures.empty()) figures += ';';
            figures += f.name + '=' + number_text::format(f.value, -1);
        }
        const auto& o = e.order;
        row(out, {timeMsText(e.timeMs), e.tool, e.window, e.tag, o.strOrderID, o.strAccountID,
                  o.strCode, std::string(codes::directionText(o.nDirection)),
                  std::string(codes::openCloseText(o.nOpenClose)), priceText(r, o.strCode, o.dPrice),
                  lots(o.dVolume), std::to_string(e.result), e.reason, figures});
    }
    return out;
}

std::string chartSvg(const ReplayResult& r, const std::string& title) {
    constexpr double kW = 960, kLeft = 90, kRight = 20, kTop = 50;
    constexpr double kPnlH = 250, kGap = 40, kPosH = 100;
    constexpr std::int64_t kQuietCapMs = 60'000;
    constexpr const char* kColours[] = {"#1f5fbf", "#c0392b", "#2e8b57", "#8e44ad"};
    const double plotW = kW - kLeft - kRight;
    const double posTop = kTop + kPnlH + kGap;
    const auto& pts = r.curve;

    // Trading time: the gap between two samples counts at most a minute.
    std::vector<double> xs(pts.size(), 0);
    for (std::size_t i = 1; i < pts.size(); ++i)
        xs[i] = xs[i - 1] + static_cast<double>(
                                std::min(pts[i].timeMs - pts[i - 1].timeMs, kQuietCapMs));
    const double span = xs.empty() || xs.back() <= 0 ? 1 : xs.back();
    auto X = [&](std::size_t i) { return kLeft + xs[i] / span * plotW; };

    double lo = 0, hi = 0, posMax = 1;
    for (const auto& p : pts) {
        lo = std::min(lo, p.netPnl);
        hi = std::max(hi, p.netPnl);
        for (double q : p.positions) posMax = std::max(posMax, std::abs(q));
    }
    if (hi - lo < 1) hi = lo + 1;
    auto Y = [&](double v) { return kTop + (hi - v) / (hi - lo) * kPnlH; };
    auto P = [&](double q) { return posTop + kPosH / 2 - q / posMax * (kPosH / 2); };

    std::string s;
    s += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"960\" height=\"480\" "
         "viewBox=\"0 0 960 480\" font-family=\"sans-serif\" font-size=\"12\">\n";
    s += "<rect width=\"960\" height=\"480\" fill=\"#ffffff\"/>\n";
    s += "<text x=\"" + fmt("%.1f", kLeft) + "\" y=\"24\" font-size=\"15\">" + xml(title) +
         "</text>\n";
    // Frames, zero lines and scale labels.
    auto frame = [&](double top, double h) {
        s += "<rect x=\"" + fmt("%.1f", kLeft) + "\" y=\"" + fmt("%.1f", top) + "\" width=\"" +
             fmt("%.1f", plotW) + "\" height=\"" + fmt("%.1f", h) +
             "\" fill=\"none\" stroke=\"#999999\"/>\n";
    };
    auto label = [&](double y, const std::string& text) {
        s += "<text x=\"" + fmt("%.1f", kLeft - 6) + "\" y=\"" + fmt("%.1f", y + 4) +
             "\" text-anchor=\"end\">" + xml(text) + "</text>\n";
    };
    auto hline = [&](double y) {
        s += "<line x1=\"" + fmt("%.1f", kLeft) + "\" y1=\"" + fmt("%.1f", y) + "\" x2=\"" +
             fmt("%.1f", kLeft + plotW) + "\" y2=\"" + fmt("%.1f", y) +
             "\" stroke=\"#cccccc\"/>\n";
    };
    frame(kTop, kPnlH);
    frame(posTop, kPosH);
    hline(Y(0));
    hline(P(0));
    if (hi > 0) label(kTop, fmt("%.0f", hi));
    if (lo < 0) label(kTop + kPnlH, fmt("%.0f", lo));
    // The zero line's label, unless it would sit on the top or bottom one.
    if ((hi <= 0 || Y(0) - kTop > 14) && (lo >= 0 || kTop + kPnlH - Y(0) > 14)) label(Y(0), "0");
    label(posTop, lots(posMax));
    label(P(0), "0");
    label(posTop + kPosH, lots(-posMax));
    s += "<text x=\"" + fmt("%.1f", kLeft + 4) + "\" y=\"" + fmt("%.1f", kTop - 6) +
         "\">净盈亏（元）</text>\n";
    s += "<text x=\"" + fmt("%.1f", kLeft + 4) + "\" y=\"" + fmt("%.1f", posTop - 6) +
         "\">持仓（手）</text>\n";

    // Day marks: a dashed line where the trading day changes, with its date.
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const std::tm tm = toLocalTm(pts[i].timeMs / 1000);
        const bool newDay = i == 0 || toLocalTm(pts[i - 1].timeMs / 1000).tm_yday != tm.tm_yday;
        if (!newDay || (tm.tm_hour >= 18 && i != 0)) continue;
        char date[16];
        std::snprintf(date, sizeof date, "%02d-%02d", tm.tm_mon + 1, tm.tm_mday);
        const std::string x = fmt("%.1f", X(i));
        if (i != 0)
            s += "<line x1=\"" + x + "\" y1=\"" + fmt("%.1f", kTop) + "\" x2=\"" + x + "\" y2=\"" +
                 fmt("%.1f", posTop + kPosH) + "\" stroke=\"#999999\" stroke-dasharray=\"4 3\"/>\n";
        s += "<text x=\"" + fmt("%.1f", X(i) + 3) + "\" y=\"" + fmt("%.1f", posTop + kPosH + 16) +
             "\">" + date + "</text>\n";
    }

    // Net P&L.
    if (!pts.empty()) {
        s += "<polyline fill=\"none\" stroke=\"#1f5fbf\" stroke-width=\"1.5\" points=\"";
        for (std::size_t i = 0; i < pts.size(); ++i)
            s += (i ? " " : "") + fmt("%.1f", X(i)) + "," + fmt("%.1f", Y(pts[i].netPnl));
        s += "\"/>\n";
    }
    // Positions, as steps: a position holds until the next sample.
    for (std::size_t k = 0; k < r.symbols.size() && k < std::size(kColours); ++k) {
        s += "<polyline fill=\"none\" stroke=\"" + std::string(kColours[k]) +
             "\" stroke-width=\"1.5\" points=\"";
        for (std::size_t i = 0; i < pts.size(); ++i) {
            const double q = k < pts[i].positions.size() ? pts[i].positions[k] : 0;
            if (i) s += " " + fmt("%.1f", X(i)) + "," + fmt("%.1f", P(pts[i - 1].positions[k]));
            s += (i ? " " : "") + fmt("%.1f", X(i)) + "," + fmt("%.1f", P(q));
        }
        s += "\"/>\n";
        s += "<text x=\"" + fmt("%.1f", kLeft + plotW - 80 * (k + 1) + 10) + "\" y=\"" +
             fmt("%.1f", posTop - 6) + "\" fill=\"" + kColours[k] + "\">" +
             xml(r.symbols[k].strCode) + "</text>\n";
    }
    s += "</svg>\n";
    return s;
}

bool writeOutputs(const std::filesystem::path& dir, const ReplayResult& result,
                  const std::vector<JournalEntry>& entries, const std::string& title,
                  std::string& error) {
    std::error_code ec;
    std::filesystem::create_directories(dir, ec);
    if (ec) {
        error = "cannot create " + dir.string() + ": " + ec.message();
        return false;
    }
    if (!writeGbk(dir / "orders.csv", ordersCsv(result), error) ||
        !writeGbk(dir / "fills.csv", fillsCsv(result), error) ||
        !writeGbk(dir / "journal.csv", journalCsv(result, entries), error))
        return false;
    std::ofstream svg(dir / "chart.svg", std::ios::binary | std::ios::trunc);
    const std::string text = chartSvg(result, title);
    svg.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!svg) error = "cannot write " + (dir / "chart.svg").string();
    return static_cast<bool>(svg);
}

}  // namespace replay
