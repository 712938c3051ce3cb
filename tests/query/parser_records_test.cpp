// Every reply parser on fixtures, compared as whole records: each case of
// tests/data/parsers/cases.txt parses its replies in turn into one game state, and the record it
// leaves (status, every non-empty player slot, team scores) must equal <name>.expected byte for byte.

#include "query/parsers.h"
#include "query/quake_family.h"
#include "query/query_extras.h"
#include "tests/support/fixture_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

struct ParseCase {
    std::string name;
    profiles::GameProfile profile;
    std::vector<std::pair<int, std::vector<std::string>>> replies; // engine, datagrams joined
    std::vector<std::pair<int, int>> teams;                        // slot, team set before parsing
};

void PrintTo(const ParseCase& c, std::ostream* os) {
    *os << c.name;
}

int EngineByCode(const std::string& code) {
    for (int id = 1; id <= kEngineA2S; ++id)
        if (EngineCodeWithExtras(id, {false, true, false, false}) == code) return id;
    ADD_FAILURE() << "unknown engine " << code;
    return kEngineUnknown;
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);)
        parts.push_back(part);
    return parts;
}

std::vector<ParseCase> LoadCases() {
    std::vector<ParseCase> cases;
    std::istringstream in(test::ReadFixture("parsers/cases.txt"));
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        std::string flags, replies, teams;
        ParseCase c;
        fields >> c.name >> flags >> replies >> teams;
        c.profile.Advanced = flags[0] - '0';
        c.profile.AutoTeams = flags[1] - '0';
        for (const std::string& reply : Split(replies, ',')) {
            const auto colon = reply.find(':');
            c.replies.push_back({EngineByCode(reply.substr(0, colon)), Split(reply.substr(colon + 1), '+')});
        }
        if (teams.rfind("teams=", 0) == 0)
            for (const std::string& pair : Split(teams.substr(6), ','))
                c.teams.push_back({std::stoi(pair), std::stoi(pair.substr(pair.find(':') + 1))});
        cases.push_back(std::move(c));
    }
    return cases;
}

std::string Dump(const GameState& st) {
    const ServerStatus& s = st.Status;
    std::ostringstream out;
    out << "GameType=" << s.GameType << "\nCaptureLimit=" << s.CaptureLimit << "\nMaxClients=" << +s.MaxClients
        << "\nTimeLimit=" << +s.TimeLimit << "\nFragLimit=" << s.FragLimit << "\nHostName=" << s.HostName
        << "\nVersion=" << s.Version << "\nProtocol=" << s.Protocol << "\nMapName=" << s.MapName
        << "\nGameName=" << s.GameName << "\nScoreRed=" << s.ScoreRed << "\nScoreBlue=" << s.ScoreBlue
        << "\nScoreTime=" << s.ScoreTime << "\nGameVersion=" << s.GameVersion << "\nNumPlayers=" << s.NumPlayers
        << "\n";
    for (int slot = 0; slot <= kMaxPlayers; ++slot) {
        const PlayerStatus& p = st.Players[slot];
        if (p == PlayerStatus{}) continue;
        out << "Player " << slot << ": score=" << p.Score << " ping=" << p.Ping << " team=" << p.Team
            << " name=" << p.Name << "\n";
    }
    out << "TeamScores=" << st.TeamScoreRed << " " << st.TeamScoreBlue << " resets=" << st.TeamScoreResets << "\n";
    return out.str();
}

class ParserRecordTest : public testing::TestWithParam<ParseCase> {};

TEST_P(ParserRecordTest, LeavesTheExpectedRecord) {
    const ParseCase& c = GetParam();
    GameState st;
    for (const auto& [slot, team] : c.teams)
        st.Players[slot].Team = team;
    for (const auto& [engine, datagrams] : c.replies) {
        std::string reply;
        for (const std::string& file : datagrams)
            reply += test::ReadFixture(file);
        st.EngineId = engine;
        ParseEngineReply(engine, reply, st, c.profile);
    }
    const std::string expectedFile = "parsers/" + c.name + ".expected";
    if (std::getenv("TALLYBOT_WRITE_EXPECTED")) {
        std::ofstream(test::SourceRoot() / "tests/data" / expectedFile, std::ios::binary) << Dump(st);
        return;
    }
    EXPECT_EQ(Dump(st), test::ReadFixture(expectedFile));
}

INSTANTIATE_TEST_SUITE_P(Cases, ParserRecordTest, testing::ValuesIn(LoadCases()),
                         [](const auto& info) { return info.param.name; });

// Threewave servers report the time played; the time left is the limit minus it.
TEST(ThreewaveTimeTest, TimeLeftFromTimePlayed) {
    const struct {
        int timeLimit;
        const char *gameName, *in, *out;
    } cases[] = {
        {20, "threewave", "12:15", "7:45"}, {20, "Threewave", "19:00", "1:00"}, {20, "THREEWAVE ", "10:00", "9:00"},
        {20, "threewave", "19:59", "0:01"}, {30, "threewave", "0:05", "29:55"}, {20, "threewave", "N/A", "N/A"},
        {20, "baseq3", "12:15", "12:15"},   {20, "threewave", "5", "5"},        {20, "threewave", "5:x", "5:x"}};
    for (const auto& c : cases) {
        ServerStatus s;
        s.TimeLimit = static_cast<std::uint8_t>(c.timeLimit);
        s.GameName = c.gameName;
        s.ScoreTime = c.in;
        quake::ApplyThreewaveTime(s);
        EXPECT_EQ(s.ScoreTime, c.out) << c.in;
    }
}

} // namespace
} // namespace tallybot::query
