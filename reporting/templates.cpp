#include "reporting/templates.h"

#include "base/vb_convert.h"
#include "reporting/colour_codes.h"

#include <cstdint>
#include <limits>
#include <vector>

#ifndef TALLYBOT_VERSION
#define TALLYBOT_VERSION "1.0.0"
#endif

namespace tallybot::reporting {

const std::array<TemplateMark, 22> kTemplateMarks = {{
    {"%sip%", "%sip% - Server IP"},
    {"%sna%", "%sna% - Server/Host name"},
    {"%sve%", "%sve% - Server/Host version"},
    {"%gna%", "%gna% - Gamename"},
    {"%gve%", "%gve% - Gameversion"},
    {"%mtl%", "%mtl% - Time left on map"},
    {"%map%", "%map% - Mapname"},
    {"%mpl%", "%mpl% - Max. players"},
    {"%npl%", "%npl% - Number of players"},
    {"%tnr%", "%tnr% - Team name RED"},
    {"%tnb%", "%tnb% - Team name BLUE"},
    {"%tsr%", "%tsr% - Team score RED"},
    {"%tsb%", "%tsb% - Team score BLUE"},
    {"%sdb%", "%sdb% - Score difference BLUE"},
    {"%sdr%", "%sdr% - Score difference RED"},
    {"%apr%", "%apr% - Average ping RED"},
    {"%apb%", "%apb% - Average ping BLUE"},
    {"%fcb%", "%fcb% - Flag capped by (CTF)"},
    {"$ec$", "$ec$ - Extension text color"},
    {"$ic$", "$ic$ - Information text color"},
    {"$pv$", "$pv$ - Program version"},
    {"#fca#", "#fca# - Flag captured condition"},
}};

namespace {

constexpr std::string_view kCondition = "#fca#";

// Values in the order the placeholders are replaced.
struct MarkValues {
    std::string sip, sna, sve, gna, gve, mtl, map, mpl, npl, tnr, tnb, tsr, tsb, sdb, sdr, apr, apb, fcb;
    bool condition = false;
};

std::int32_t ToLong(long long value) {
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        throw vb::Overflow();
    return static_cast<std::int32_t>(value);
}

// One player gives his own ping and none gives 0: only two or more are averaged.
std::string AveragePing(std::int32_t sum, int count) {
    if (count >= 2 && sum >= 2) return std::to_string(vb::CLng(static_cast<double>(sum) / count));
    return std::to_string(sum);
}

std::string Difference(std::int32_t current, std::int32_t lastPosted) {
    const std::int32_t diff = ToLong(static_cast<long long>(current) - lastPosted);
    return (diff >= 0 ? "+" : "") + std::to_string(diff);
}

std::string TeamName(std::string_view box, const char* fallback) {
    std::string name = TrimBlanks(box);
    return name.empty() ? std::string(fallback) : name;
}

MarkValues SampleValues() {
    MarkValues v;
    v.sip = "192.168.0.1:27960";
    v.sna = "Zephra Server";
    v.sve = "Q3 1.32 linux-i386 Oct 7 2002";
    v.gna = "osp";
    v.gve = "OSP 1.01";
    v.mtl = "15:00";
    v.map = "q3wctf2";
    v.mpl = "14";
    v.npl = "5";
    v.tnr = "Red";
    v.tnb = "Blue";
    v.tsr = "1";
    v.tsb = "2";
    v.sdb = "+1";
    v.sdr = "+0";
    v.apr = "30";
    v.apb = "20";
    v.fcb = "kavik";
    v.condition = true;
    return v;
}

MarkValues LiveValues(const ReportContext& ctx, const ReportingState& state, std::string_view text) {
    const query::GameState& game = ctx.game;
    const query::ServerStatus& status = game.Status;
    MarkValues v;
    v.tnr = TeamName(ctx.txtTeamNameRed, "Red");
    v.tnb = TeamName(ctx.txtTeamNameBlue, "Blue");

    std::int32_t sumRed = 0, sumBlue = 0;
    int countRed = 0, countBlue = 0;
    for (int i = 1; i <= status.NumPlayers; ++i) {
        if (i > query::kMaxPlayers) throw vb::SubscriptOutOfRange();
        const query::PlayerStatus& p = game.Players[static_cast<std::size_t>(i)];
        if (p.Team == 1) {
            sumRed = ToLong(static_cast<long long>(sumRed) + p.Ping);
            ++countRed;
        } else if (p.Team == 2) {
            sumBlue = ToLong(static_cast<long long>(sumBlue) + p.Ping);
            ++countBlue;
        }
    }
    v.apr = AveragePing(sumRed, countRed);
    v.apb = AveragePing(sumBlue, countBlue);

    v.mtl = status.ScoreTime;
    v.map = status.MapName;
    v.sip = ctx.cmbGamServer;
    v.sna = status.HostName;
    v.sve = status.Version;
    v.gna = status.GameName;
    v.gve = status.GameVersion;
    v.mpl = std::to_string(status.MaxClients);
    v.npl = std::to_string(status.NumPlayers);
    v.tsr = std::to_string(game.TeamScoreRed);
    v.tsb = std::to_string(game.TeamScoreBlue);

    if (text.find("%sdr%") != std::string_view::npos) v.sdr = Difference(game.TeamScoreRed, state.LastPostedRed);
    if (text.find("%sdb%") != std::string_view::npos) v.sdb = Difference(game.TeamScoreBlue, state.LastPostedBlue);

    if (ctx.Profile().Scoring == 2) {
        v.condition = true;
        if (state.CappingPlayer >= 1) {
            if (state.CappingPlayer > query::kMaxPlayers) throw vb::SubscriptOutOfRange();
            v.fcb = game.Players[static_cast<std::size_t>(state.CappingPlayer)].Name;
        }
    }
    return v;
}

bool Contains(std::string_view text, std::string_view mark) {
    return text.find(mark) != std::string_view::npos;
}

// Replaces the placeholders of one text in their fixed order; true when "%fcb%" was among them.
bool ReplacePlaceholders(std::string& line, const MarkValues& v) {
    const std::pair<std::string_view, const std::string*> order[] = {
        {"%sip%", &v.sip}, {"%sna%", &v.sna}, {"%sve%", &v.sve}, {"%gna%", &v.gna}, {"%gve%", &v.gve},
        {"%mtl%", &v.mtl}, {"%map%", &v.map}, {"%mpl%", &v.mpl}, {"%npl%", &v.npl}, {"%tnr%", &v.tnr},
        {"%tnb%", &v.tnb}, {"%tsr%", &v.tsr}, {"%tsb%", &v.tsb}, {"%sdb%", &v.sdb}, {"%sdr%", &v.sdr},
        {"%apr%", &v.apr}, {"%apb%", &v.apb},
    };
    for (const auto& [placeholder, value] : order)
        if (Contains(line, placeholder)) line = ReplaceAll(std::move(line), placeholder, *value);
    if (!Contains(line, "%fcb%")) return false;
    line = ReplaceAll(std::move(line), "%fcb%", v.fcb);
    return true;
}

// A stretch of a line and the colour code in front of it (none for the first).
struct Stretch {
    const std::string* colour;
    std::string text;
};

// Cuts the line at its colour marks, "$ec$" before "$ic$" as the classic replacement order has it.
std::vector<Stretch> CutAtColourMarks(std::string_view line, const std::string& ext, const std::string& info) {
    std::vector<Stretch> stretches;
    const auto cutInfo = [&](std::string_view part, const std::string* colour) {
        std::size_t pos = 0;
        for (std::size_t hit = part.find("$ic$"); hit != std::string_view::npos; hit = part.find("$ic$", pos)) {
            stretches.push_back({colour, std::string(part.substr(pos, hit - pos))});
            colour = &info;
            pos = hit + 4;
        }
        stretches.push_back({colour, std::string(part.substr(pos))});
    };
    std::size_t pos = 0;
    const std::string* colour = nullptr;
    for (std::size_t hit = line.find("$ec$"); hit != std::string_view::npos; hit = line.find("$ec$", pos)) {
        cutInfo(line.substr(pos, hit - pos), colour);
        colour = &ext;
        pos = hit + 4;
    }
    cutInfo(line.substr(pos), colour);
    return stretches;
}

// [Extras] TwoDigitColours: each stretch is expanded on its own, so that every colour code is
// written to suit the character that ends up after it.
std::string ExpandWithFittedColours(std::string_view line, const ReportContext& ctx, const MarkValues& v,
                                    bool& namedCapper) {
    std::vector<Stretch> stretches = CutAtColourMarks(line, ctx.settings.ExtTextCol, ctx.settings.InfoTextCol);
    for (Stretch& s : stretches) {
        s.text = ReplaceAll(std::move(s.text), "$pv$", ProgramVersion());
        namedCapper = ReplacePlaceholders(s.text, v) || namedCapper;
    }
    std::string tail;
    for (auto it = stretches.rbegin(); it != stretches.rend(); ++it) {
        tail.insert(0, it->text);
        if (it->colour) tail.insert(0, FitColourCode(*it->colour, tail));
    }
    return tail;
}

} // namespace

std::string MarkOfPickerEntry(std::string_view entry) {
    return TrimBlanks(entry.substr(0, 5));
}

std::string ProgramVersion() {
    return TALLYBOT_VERSION;
}

std::string ReplaceAll(std::string text, std::string_view from, std::string_view to) {
    if (from.empty()) return text;
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    for (std::size_t hit = text.find(from); hit != std::string::npos; hit = text.find(from, pos)) {
        out.append(text, pos, hit - pos);
        out.append(to);
        pos = hit + from.size();
    }
    out.append(text, pos, std::string::npos);
    return out;
}

std::string TrimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    const std::size_t last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

std::string ExpandTemplate(const ReportContext& ctx, ReportingState& state, std::string_view text, bool preview,
                           bool resetScores) {
    const MarkValues v = preview ? SampleValues() : LiveValues(ctx, state, text);
    std::string line(text);

    // The conditional clause always runs to the end of the line; a second mark does not close it.
    const std::size_t mark = line.find(kCondition);
    if (mark != std::string::npos) {
        if (v.fcb.empty() || !v.condition)
            line.erase(mark);
        else
            line = ReplaceAll(std::move(line), kCondition, "");
    }

    // Only marks that survived the condition count as posted.
    if (!preview) {
        const query::GameState& game = ctx.game;
        if (resetScores || (game.TeamScoreRed == 0 && game.TeamScoreBlue == 0)) {
            state.LastPostedRed = 0;
            state.LastPostedBlue = 0;
        } else {
            if (Contains(line, "%sdb%")) state.LastPostedBlue = game.TeamScoreBlue;
            if (Contains(line, "%sdr%")) state.LastPostedRed = game.TeamScoreRed;
        }
    }

    bool namedCapper = false;
    if (!preview && ctx.settings.Extras.TwoDigitColours == 1) {
        line = ExpandWithFittedColours(line, ctx, v, namedCapper);
    } else {
        line = ReplaceAll(std::move(line), "$ec$", ctx.settings.ExtTextCol);
        line = ReplaceAll(std::move(line), "$ic$", ctx.settings.InfoTextCol);
        line = ReplaceAll(std::move(line), "$pv$", ProgramVersion());
        namedCapper = ReplacePlaceholders(line, v);
    }
    if (namedCapper && !preview) state.CappingPlayer = 0; // a capture is named once
    return line;
}

} // namespace tallybot::reporting
