#include "reporting/info_posts.h"
#include "tests/reporting/reporting_fixture.h"

namespace tallybot::reporting::test {
namespace {

using Post = void (InfoPosts::*)();

const Post kGatedPosts[] = {&InfoPosts::mnuPostServer,    &InfoPosts::mnuPostServerShort,
                            &InfoPosts::mnuPostTeams,     &InfoPosts::mnuPostTeamsShort,
                            &InfoPosts::mnuPostPlayers,   &InfoPosts::mnuPostPlayersShort,
                            &InfoPosts::mnuPostCustomMess};

std::string ErrorLine(const std::string& text) {
    return E + "Error : " + I + text + E + "!";
}

class InfoPostsTest : public ReportingTest {
protected:
    InfoPostsTest() { Profile().Message = "custom"; }
    std::vector<std::string> Run(Post post) {
        channel.lines.clear();
        (rep.Posts.*post)();
        return channel.lines;
    }
};

TEST_F(InfoPostsTest, GameServerMissingAnswersWithAnErrorAndIrcMissingWithNothing) {
    AddPlayer("kavik", 1, 10, 1);
    settings.ConnState = 1;
    for (Post post : kGatedPosts)
        EXPECT_EQ(Run(post), std::vector{ErrorLine("Not connected to gameserver")});
    EXPECT_EQ(Run(&InfoPosts::mnuPostHelp).size(), 3u);
    EXPECT_EQ(Run(&InfoPosts::mnuPostAbout).at(1), E + "Tallybot:" + I + " Game server to IRC match reporter");

    settings.ConnState = 2;
    for (Post post : kGatedPosts)
        EXPECT_TRUE(Run(post).empty());
    EXPECT_TRUE(Run(&InfoPosts::mnuPostHelp).empty());
    EXPECT_TRUE(Run(&InfoPosts::mnuPostAbout).empty());
}

TEST_F(InfoPostsTest, ServerPostsThreeLinesAndDropsAShortGameVersion) {
    AddPlayer("kavik", 1, 10, 1);
    const std::vector<std::string> full = {
        E + "Host:" + I + " Zephra " + E + "(" + I + " 10.0.0.1:27960 " + E + ")",
        E + "Version:" + I + " Q3 1.32" + E + " ," + I + " OSP 1.01",
        E + "Gamename:" + I + " osp " + E + ", Map:" + I + " q3wctf1 " + E + ", Players:" + I + " 1" + E + " /" + I +
            " 16",
    };
    EXPECT_EQ(Run(&InfoPosts::mnuPostServer), full);
    game.Status.GameVersion = "v2";
    EXPECT_EQ(Run(&InfoPosts::mnuPostServer)[1], E + "Version:" + I + " Q3 1.32" + E);
    EXPECT_EQ(Run(&InfoPosts::mnuPostServerShort),
              std::vector{E + "Hostname:" + I + " Zephra " + E + ", Map:" + I + " q3wctf1 " + E + ", Players:" + I +
                          " 1" + E + " /" + I + " 16"});
}

TEST_F(InfoPostsTest, TeamsPostRefusesWithoutTeams) {
    Profile().Advanced = 0;
    EXPECT_EQ(Run(&InfoPosts::mnuPostTeams), std::vector{ErrorLine("Server does not support advanced info commands")});
    Profile().AutoTeams = 1;
    EXPECT_EQ(Run(&InfoPosts::mnuPostTeamsShort), std::vector{ErrorLine("No players on the server")});
    AddPlayer("a", 1, 10, 0);
    AddPlayer("b", 1, 10, 3);
    EXPECT_EQ(Run(&InfoPosts::mnuPostTeams), std::vector{ErrorLine("No players in teams on the server")});
}

TEST_F(InfoPostsTest, TeamTableSetsTheKthRedBesideTheKthBlue) {
    for (int i = 1; i <= 8; ++i)
        AddPlayer("p" + std::to_string(i), i, 10 * i, i % 2 == 1 && i < 6 ? 1 : 2);
    // red: p1 p3 p5; blue: p2 p4 p6 p7 p8
    game.TeamScoreRed = 2;
    game.TeamScoreBlue = 1;
    auto entry = [](const std::string& name, int score, int ping) {
        return name + " " + E + "(S" + I + " " + std::to_string(score) + E + ",P" + I + " " + std::to_string(ping) + E +
               ")";
    };
    auto blue = [&](int i) { return " " + E + "-" + Blue + " " + entry("p" + std::to_string(i), i, 10 * i); };
    const std::vector<std::string> expected = {
        Red + "Red " + E + "(P" + I + " 30" + E + ")" + I + " 2 " + E + ":" + I + " 1 " + E + "(P" + I + " 54" + E +
            ") " + Blue + "Blue",
        E + "Map: " + I + "q3wctf1 " + E + ", Time left:" + I + " 15:00",
        Red + entry("p1", 1, 10) + blue(2),
        Red + entry("p3", 3, 30) + blue(4),
        Red + entry("p5", 5, 50) + blue(6),
        blue(7),
        blue(8),
    };
    EXPECT_EQ(Run(&InfoPosts::mnuPostTeams), expected);

    Profile().Scoring = 2;
    state.CappingPlayer = 3;
    const auto shortForm = Run(&InfoPosts::mnuPostTeamsShort);
    EXPECT_EQ(shortForm, (std::vector{expected[0], E + "Capped by" + I + " p3", expected[1]}));
    EXPECT_EQ(Run(&InfoPosts::mnuPostTeamsShort)[1], ""); // named once, then an empty line
}

TEST_F(InfoPostsTest, EleventhPlayerOfATeamEndsTheTeamsPostAfterTheHeader) {
    for (int i = 0; i < 11; ++i)
        AddPlayer("r", 0, 0, 1);
    EXPECT_EQ(Run(&InfoPosts::mnuPostTeams).size(), 2u);
    EXPECT_EQ(log.ErrorCount(), 1);
    EXPECT_NE(log.LogText().find("mnuPostTeams_Click"), std::string::npos);
}

TEST_F(InfoPostsTest, PlayerListSortsByScoreAndLosesANegativeScoreToAnEmptySlot) {
    EXPECT_EQ(Run(&InfoPosts::mnuPostPlayers), std::vector{ErrorLine("No players on the server")});
    AddPlayer("low", 3, 40, 1);
    AddPlayer("neg", -1, 30, 2);
    AddPlayer("top", 5, 20, 2);
    EXPECT_EQ(Run(&InfoPosts::mnuPostPlayersShort), std::vector{E + "Players: " + I + "top low  "});
    EXPECT_EQ(Run(&InfoPosts::mnuPostPlayers),
              std::vector{E + "Players: " + I + "top " + E + "(S" + I + " 5" + E + ",P" + I + " 20" + E + ") low " + E +
                          "(S" + I + " 3" + E + ",P" + I + " 40" + E + ")  " + E + "(S" + I + " 0" + E + ",P" + I +
                          " 0" + E + ") "});
    // Equal scores end where the passes leave them, not in table order.
    game.Status.NumPlayers = 0;
    const std::pair<const char*, int> players[] = {{"a", 1}, {"b", 2}, {"c", 1}, {"d", 3}, {"e", 1}};
    for (const auto& [name, score] : players)
        AddPlayer(name, score, 0, 1);
    EXPECT_EQ(rep.Posts.FormatPlayerList(false), E + "Players: " + I + "d b c a e ");
}

TEST_F(InfoPostsTest, APlayerNamedWithDigitsKeepsThemInAClientOnlyWithTwoDigitColours) {
    AddPlayer("1337", 5, 40, 1);
    EXPECT_EQ(ShownByClient(Run(&InfoPosts::mnuPostPlayersShort).at(0)), "Players: 337 ");
    settings.Extras.TwoDigitColours = 1;
    EXPECT_EQ(ShownByClient(Run(&InfoPosts::mnuPostPlayers).at(0)), "Players: 1337 (S 5,P 40) ");
}

TEST_F(InfoPostsTest, PlayerListStopsAtThePlayerWhoReaches380Characters) {
    for (int i = 0; i < 30; ++i)
        AddPlayer(std::string(19, 'a') + static_cast<char>('A' + i), 100 - i, 0, 1);
    // 17 characters of prefix plus 21 per player: the 18th reaches 395.
    std::string expected = E + "Players: " + I;
    for (int i = 0; i < 18; ++i)
        expected += std::string(19, 'a') + static_cast<char>('A' + i) + " ";
    EXPECT_EQ(rep.Posts.FormatPlayerList(false), expected);
}

TEST_F(InfoPostsTest, HelpListsCommandsOnlyWithTheMasterSwitch) {
    settings.AllowCustom = 0;
    settings.AllowAbout = 2; // listed when nonzero
    const auto help = Run(&InfoPosts::mnuPostHelp);
    EXPECT_EQ(help, (std::vector<std::string>{
                        E + "Sending delay for user requested data is" + I + " 10 " + E + "seconds!",
                        E + "Abbreviations: " + I + "S " + E + "= " + I + "Score " + E + ", " + I + "P " + E + "= " +
                            I + "Ping",
                        E + "Available Commands: " + I + " !about !info !sinfo !pinfo !tinfo !ssinfo !spinfo !stinfo",
                    }));
    settings.AllowUserComm = 0;
    EXPECT_EQ(Run(&InfoPosts::mnuPostHelp)[2], E + "Available Commands: " + I);
}

} // namespace
} // namespace tallybot::reporting::test
