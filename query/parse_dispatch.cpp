// One reply to its engine's parser, then the team scores.

#include "base/error_trap.h"
#include "query/a2s_parser.h"
#include "query/parsers.h"
#include "query/query_extras.h"
#include "query/team_scores.h"

namespace tallybot::query {

namespace {

using namespace std::string_view_literals;

// Doom 3's entry: its disconnect packet is ignored; the profile rules of the Quake family apply,
// with reset -1.
void ParseD3Reply(std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    if (reply == "\xFF\xFF"
                 "disconnect\0"sv)
        return;
    ParseD3EngineData(reply, state, profile);
    if (profile.Advanced == 0) state.Status.ScoreTime = "N/A";
    if (profile.AutoTeams == 0) CalcTeamScores(state, -1, 0, profile);
}

using Entry = void (*)(std::string_view, GameState&, const profiles::GameProfile&);

Entry EntryOf(int engineId) {
    switch (engineId) {
    case kEngineQ2:
        return ParseQ2;
    case kEngineQ3:
        return ParseQ3Reply;
    case kEngineUT:
    case kEngineAA:
        return ParseGameSpy;
    case kEngineHL:
        return ParseHLReply;
    case kEngineRTCW:
    case kEngineEF:
    case kEngineJK2:
    case kEngineSoF2:
    case kEngineET:
    case kEngineJA:
    case kEngineCoD:
    case kEngineEF2:
        return ParseQ3FamilyReply;
    case kEngineUT2k3:
        return ParseUT2003Reply;
    case kEngineMoH:
        return ParseMoHReply;
    case kEngineFC:
        return ParseFCReply;
    case kEngineD3:
        return ParseD3Reply;
    case kEngineA2S: // [Extras] A2SQuery: the cycle only reaches it with the switch on
        return ParseA2SReply;
    default:
        return nullptr; // unknown or pending: nothing to parse yet
    }
}

} // namespace

void ParseEngineReply(int engineId, std::string_view reply, GameState& state, const profiles::GameProfile& profile) {
    Entry entry = EntryOf(engineId);
    if (!entry) return;
    // The parsers trap per statement; this keeps anything they miss from leaving the reply.
    base::ResumeNext([&] { entry(reply, state, profile); });
    UpdateTeamScores(state, profile);
}

} // namespace tallybot::query
