// Engine detection from realistic first replies.

#include "query/game_state.h"
#include "tests/support/fixture_file.h"

#include <gtest/gtest.h>

namespace tallybot::query {
namespace {

using namespace std::string_literals;

const std::string kFF4 = "\xFF\xFF\xFF\xFF"s;

struct DetectCase {
    std::string name;
    std::string reply;
    int before = kEngineUnknown; // EngineId left by an earlier reply
    int engine = 0;
    int portOffset = 0;
};

std::string Fixture(const char* path) {
    return test::ReadFixture(path);
}

std::string D3Info(const std::string& version) {
    return "\xFF\xFFinfoResponse\0\x01\x02\x03\x04\x29\0\x01\0"s + "si_version\0"s + version +
           "\0si_map\0game/mp/d3dm1\0\0\0 "s;
}

class DetectEngineTest : public ::testing::TestWithParam<DetectCase> {};

TEST_P(DetectEngineTest, SettlesEngineAndPort) {
    const DetectCase& c = GetParam();
    GameState state;
    state.EngineId = c.before;
    DetectEngine(c.reply, state);
    EXPECT_EQ(state.EngineId, c.engine);
    EXPECT_EQ(state.QueryPortOffset, c.portOffset);
}

INSTANTIATE_TEST_SUITE_P(
    Replies, DetectEngineTest,
    ::testing::Values(
        DetectCase{"Q3", Fixture("q3/ctf_16players.bin"), 0, kEngineQ3},
        DetectCase{"Q3Threewave", Fixture("q3/threewave_ctf.bin"), 0, kEngineQ3},
        DetectCase{"Q2", Fixture("q2/dm_3players.bin"), 0, kEngineQ2},
        DetectCase{"Q2R1Q2", Fixture("q2/ctf_2players.bin"), 0, kEngineQ2},
        DetectCase{"RTCW", Fixture("rtcw/obj_4players.bin"), 0, kEngineRTCW},
        DetectCase{"EF", Fixture("ef/ctf_2players.bin"), 0, kEngineEF},
        DetectCase{"JK2", Fixture("jk2/ffa_2players.bin"), 0, kEngineJK2},
        DetectCase{"SoF2", Fixture("sof2/ctf_2players.bin"), 0, kEngineSoF2},
        DetectCase{"MoH", Fixture("moh/tdm_3players.bin"), 0, kEngineMoH},
        DetectCase{"ET", Fixture("et/sw_3players.bin"), 0, kEngineET},
        DetectCase{"JA", Fixture("ja/ctf_2players.bin"), 0, kEngineJA},
        DetectCase{"CoDHasNoVersionKey", Fixture("cod/tdm_2players.bin"), 0, kEngineCoD},
        DetectCase{"EF2", Fixture("ef2/ctf_2players.bin"), 0, kEngineEF2},
        DetectCase{"LowerCaseQ3", kFF4 + "statusResponse\n\\version\\q3 1.32 linux\n", 0, kEngineQ3},
        DetectCase{"EmptyVersionIsQ2", kFF4 + "statusResponse\n\\version\\\\mapname\\q3dm1\n", 0, kEngineQ2},
        DetectCase{"VersionKeyAtEnd", kFF4 + "print\n\\version", 0, kEngineQ2},
        DetectCase{"UnknownVersionIsQ2", kFF4 + "print\n\\version\\Quake4 1.0\n", 0, kEngineQ2},
        DetectCase{"VersionBeatsSiVersion", "\\version\\ET 2.55\\si_version\\DOOM 1.3", 0, kEngineET},
        DetectCase{"VersionIsCaseSensitive", kFF4 + "statusResponse\n\\Version\\Q3 1.32\n", 0, kEngineCoD},
        DetectCase{"Doom3", D3Info("DOOM 1.3.1.1304 linux-x86 Apr 20 2005"), 0, kEngineD3},
        DetectCase{"Doom3AnyCase", D3Info("doom 1.1"), 0, kEngineD3},
        DetectCase{"OtherSiVersionFallsThrough", D3Info("Quake4 V1.4.2"), 0, kEngineCoD},
        DetectCase{"ShortWithAt", "\\player@\\", 0, kEnginePending, 1},
        DetectCase{"LongWithAtIsNotGameSpy", "\\hostname\\a@b.example\\", 0, kEngineCoD},
        DetectCase{"BinaryQueryPortHint", "\x00\xC0\xFF\x10\x20"s, 0, kEnginePending, 1},
        DetectCase{"PendingUT", "\\gamename\\ut\\gamever\\436\\final\\", kEnginePending, kEngineUT},
        DetectCase{"PendingAA", "\\gamename\\armygame\\gamever\\2.0\\final\\", kEnginePending, kEngineAA},
        DetectCase{"PendingNoGameNameIsUT2k3", "\x80\0\0\0\0\x07\0\0"s, kEnginePending, kEngineUT2k3},
        DetectCase{"PendingOtherGameFallsThrough", "\\gamename\\serioussam\\final\\", kEnginePending, kEngineCoD},
        DetectCase{"HalfLife", kFF4 + "C127.0.0.1:27015\0Half-Life\0"s, 0, kEngineHL},
        DetectCase{"HalfLifeNeedsUpperC", kFF4 + "c127.0.0.1:27015\0"s, 0, kEngineCoD},
        DetectCase{"FarCry", "\x7F\xFF\xFF\xFFR\x0E\x01\x02"s, 0, kEngineFC},
        DetectCase{"EmptyReplyIsCoD", "", 0, kEngineCoD},
        DetectCase{"DisconnectChangesNothing", Fixture("q3/disconnect.bin"), 0, kEngineUnknown},
        DetectCase{"DisconnectWithNul", kFF4 + "disconnect\0"s, kEnginePending, kEnginePending},
        DetectCase{"MoHDisconnectIsNotSpecial", Fixture("moh/disconnect.bin"), 0, kEngineCoD}),
    [](const auto& info) { return info.param.name; });

} // namespace
} // namespace tallybot::query
