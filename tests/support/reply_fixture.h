#pragma once
// Reply fixtures under tests/data/<engine>/ as byte strings, and a compact way to state the
// player rows a parse should leave.
//
//   std::string reply = ReadReplyFixture("hl/players.bin");
//   ExpectPlayers(state.Players, {{"Gordon", 44, 0, 0}, {"Barney", 5, 0, 0}});

#include "query/game_state.h"
#include "tests/support/fixture_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tallybot::testsupport {

inline std::string ReadReplyFixture(const std::string& relative) {
    return test::ReadFixture(relative);
}

struct PlayerRow {
    std::string name;
    int score;
    int ping;
    int team;
};

// Slots 1..rows.size() hold the rows, in order.
inline void ExpectPlayers(const query::PlayerTable& table, const std::vector<PlayerRow>& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const query::PlayerStatus& p = table[i + 1];
        EXPECT_EQ(p.Name, rows[i].name) << "slot " << i + 1;
        EXPECT_EQ(p.Score, rows[i].score) << "slot " << i + 1;
        EXPECT_EQ(p.Ping, rows[i].ping) << "slot " << i + 1;
        EXPECT_EQ(p.Team, rows[i].team) << "slot " << i + 1;
    }
}

} // namespace tallybot::testsupport
