#include "fake_irc_transport.h"
#include "irc/irc_line.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

using testing::IrcRig;
using Strings = std::vector<std::string>;

// A new home's switches for present-day servers.
constexpr ServerCompat kToday{true, true, true, true, true};

TEST(IrcLineParse, PrefixWordsAndTrailing) {
    const IrcLine l = ParseIrcLine(":a!b@c.d PRIVMSG #chan :!info x\r\n");
    EXPECT_EQ(l.Nick, "a");
    EXPECT_EQ(l.User, "b");
    EXPECT_EQ(l.Host, "c.d");
    EXPECT_EQ(l.W[2], "PRIVMSG");
    EXPECT_EQ(l.W[4], ":!info");
    EXPECT_EQ(l.Trailing, "!info x");
    EXPECT_TRUE(l.FullPrefix());

    const IrcLine server = ParseIrcLine(":irc.srv 366 me #c End");
    EXPECT_TRUE(server.Nick.empty());
    EXPECT_EQ(server.Prefix, "irc.srv");
    EXPECT_TRUE(server.Trailing.empty());
}

TEST(IrcLineParse, TenWordsAtMostButTrailingWhole) {
    const IrcLine l = ParseIrcLine(":n!u@h PRIVMSG #c :1 2 3 4 5 6 7 8 9 10 11");
    EXPECT_EQ(l.W[10], "7");
    EXPECT_EQ(l.Trailing, "1 2 3 4 5 6 7 8 9 10 11");
    const IrcLine doubleBlank = ParseIrcLine("A  B");
    EXPECT_EQ(doubleBlank.W[2], "");
    EXPECT_EQ(doubleBlank.W[3], "B");
}

struct NumericCase {
    std::string line;
    int controlType;
    std::string shown; // "" when nothing is shown
    ServerCompat compat{};
    Colour colour = 0;
};

class Numerics : public ::testing::TestWithParam<NumericCase> {};

TEST_P(Numerics, ShowTheirText) {
    IrcRig rig;
    rig.irc.Properties().ControlType = GetParam().controlType;
    rig.irc.SetCompat(GetParam().compat);
    rig.Line(GetParam().line);
    if (GetParam().shown.empty()) {
        EXPECT_TRUE(rig.irc.PaneLines().empty()) << rig.LastPane();
    } else {
        EXPECT_EQ(rig.LastPane(), GetParam().shown);
        if (GetParam().colour != 0) {
            EXPECT_EQ(rig.LastColour(), GetParam().colour);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, Numerics,
    ::testing::Values(
        NumericCase{":s 001 me :Welcome to IRC", 3, "Welcome to IRC"},
        NumericCase{":s 003 me :created today", 4, "created today"}, NumericCase{":s 001 me :Welcome to IRC", 1, ""},
        NumericCase{":s 204 me Oper 10 x :srv", 1, "Oper srv"}, NumericCase{":s 261 me File 5 :debug", 2, "File debug"},
        NumericCase{":s 221 me :+i", 1, "+i"}, NumericCase{":s 329 me #c :1700000000", 2, "1700000000"},
        NumericCase{":s 251 me :There are 3 users", 0, "There are 3 users"}, NumericCase{":s 372 me :- motd", 1, ""},
        NumericCase{":s 372 me :- motd", 4, "- motd"},
        NumericCase{":s 253 me 2 :unknown connections", 3, "2 unknown connections"},
        NumericCase{":s 254 me 7 :channels formed", 2, ""},
        NumericCase{":s 301 me bob :gone fishing", 1, "Away : gone fishing"},
        NumericCase{":s 311 me bob ~b host.net * :Bob Real", 1, "bob is ~b@host.net * Bob Real"},
        NumericCase{":s 317 me bob 42 1700000000 :seconds idle", 1,
                    "bob has been idle 42 seconds , singed on 2023-11-14 22:13:20"},
        NumericCase{":s 319 me bob :@#a #b", 1, "bob on @#a #b"},
        NumericCase{":s 331 me #c :No topic", 1, "*** No Topic is set"}, NumericCase{":s 331 me #c :No topic", 0, ""},
        NumericCase{":s 332 me #c :frag on", 3, "*** Topic is 'frag on\0033'"},
        NumericCase{":s 333 me #c bob 1700000000", 3, "*** Set by bob on 2023-11-14 22:13:20"},
        NumericCase{":s 341 me bob #c", 0, "bob has been invited to #c"},
        NumericCase{":s 351 me 26.1 srv :ngircd", 0, "Server Version: ngircd"},
        NumericCase{":s 353 me = #c :@a +b c", 4, "Namelist: @a +b c"},
        NumericCase{":s 366 me #c :End of NAMES list", 1, "End of NAMES list"},
        NumericCase{":s 433 * Corvamo :Nickname already in use", 1, "Nickname already in use"},
        NumericCase{":s 502 me :Cant change mode", 1, "Cant change mode"},
        NumericCase{":s 401 me bob :No such nick", 3, ""}, NumericCase{":s 376 me :End of MOTD", 3, ""},
        NumericCase{":s 999 me :odd", 3, ""}, NumericCase{":s 468 * USER :Your username is not valid", 3, ""},
        // ShowErrorNumerics: the errors the table skips, in ErrorColor; others stay as they were.
        NumericCase{":s 468 * USER :Your username is not valid", 3, "Your username is not valid", kToday, 255},
        NumericCase{":s 401 me bob :No such nick", 1, "No such nick", kToday, 255},
        NumericCase{":s 433 * Corvamo :Nickname already in use", 1, "Nickname already in use", kToday},
        NumericCase{":s 999 me :odd", 3, "", kToday}),
    // ":s 332 me ..." under control type 3 is N332Type3; with today's switches N468Type3Today.
    [](const auto& info) {
        return "N" + info.param.line.substr(3, 3) + "Type" + std::to_string(info.param.controlType) +
               (info.param.compat == kToday ? "Today" : "");
    });

TEST(IrcLines, NamesFillTheUserListForTypesOneAndThree) {
    IrcRig rig;
    rig.Line(":s 353 me = #c :@op +voice plain");
    const auto& e = rig.irc.Users().Entries();
    ASSERT_EQ(e.size(), 3u);
    EXPECT_EQ(e[0], (UserEntry{"op", "@"}));
    EXPECT_EQ(e[1], (UserEntry{"voice", "+"}));
    EXPECT_EQ(e[2], (UserEntry{"plain", ""}));
    rig.Line(":s 353 me = #c :other");
    EXPECT_EQ(rig.irc.Users().Entries().size(), 1u); // cleared first
    EXPECT_TRUE(rig.irc.PaneLines().empty());
}

TEST(IrcLines, ServerNoticeWithoutPrefix) {
    IrcRig rig;
    rig.Line("NOTICE AUTH :*** Looking up your hostname");
    EXPECT_EQ(rig.LastPane(), "-AUTH- *** Looking up your hostname");
    EXPECT_EQ(rig.LastColour(), 102);
}

struct CommandCase {
    std::string name;
    std::string line; // several lines separated by "\n"
    std::string shown;
    Strings events;
    Strings sent;
    ServerCompat compat{};
    bool registering = false; // connected but not registered (state 1) instead of joined
};

class Commands : public ::testing::TestWithParam<CommandCase> {};

TEST_P(Commands, ShowRaiseAndAnswer) {
    IrcRig rig;
    rig.irc.SetCompat(GetParam().compat);
    if (GetParam().registering) {
        rig.irc.Connect();
        rig.events.clear();
    } else {
        rig.Join();
    }
    const auto before = rig.irc.PaneLines().size();
    for (std::size_t from = 0; from < GetParam().line.size();) {
        const std::size_t lf = GetParam().line.find('\n', from);
        rig.Line(GetParam().line.substr(from, lf - from));
        from = lf == std::string::npos ? lf : lf + 1;
    }
    if (GetParam().shown.empty()) {
        EXPECT_EQ(rig.irc.PaneLines().size(), before);
    } else {
        EXPECT_EQ(rig.LastPane(), GetParam().shown);
    }
    EXPECT_EQ(rig.events, GetParam().events);
    EXPECT_EQ(rig.transport.sent, GetParam().sent);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Commands,
    ::testing::Values(
        CommandCase{"Join", ":bob!b@h JOIN :#Zephra", "*** bob has joined #Zephra", {"UserJoin bob"}, {}},
        CommandCase{"Nick", ":bob!b@h NICK :rob", "*** bob is now known as rob", {"UserNameChange bob rob"}, {}},
        CommandCase{"Action", ":bob!b@h PRIVMSG #Zephra :\001ACTION waves\001", "* bob waves", {}, {}},
        CommandCase{"Channel", ":a!b@h PRIVMSG #Zephra :!info x", "<a> !info x", {"UserCommand !info x|a|b"}, {}},
        CommandCase{"Private", ":a!b@h PRIVMSG Corvamo :hello", "*a* -> hello", {}, {}},
        CommandCase{"Mode", ":op!o@h MODE #Zephra +o bob", "*** op sets mode: +o bob", {"UserModeChange +o bob"}, {}},
        CommandCase{"ServerMode", ":irc.srv MODE #Zephra +n", "*** irc.srv sets mode: +n ", {"UserModeChange +n "}, {}},
        CommandCase{
            "PartNamesOwnChannel", ":bob!b@h PART #other :bye", "*** bob has left #Zephra", {"UserLeave bob 1"}, {}},
        CommandCase{"KickNamesKicker",
                    ":op!o@h KICK #Zephra bob :spam",
                    "*** bob was kicked from the channel by op (spam) !",
                    {"UserLeave op 2"},
                    {}},
        CommandCase{
            "Quit", ":bob!b@h QUIT :Ping timeout", "*** bob has quit IRC (Ping timeout)", {"UserLeave bob 0"}, {}},
        CommandCase{"Notice", ":bob!b@h NOTICE Corvamo :psst", "-bob- psst", {}, {}},
        CommandCase{"DccNotice", ":bob!b@h NOTICE Corvamo :\001DCC SEND x\001", "bob - \001DCC SEND x\001", {}, {}},
        CommandCase{"CtcpPingReply", ":bob!b@h NOTICE Corvamo :\x01PING 99\x01", "[bob PING reply]: 99\x01", {}, {}},
        CommandCase{"CtcpVersionReply",
                    ":bob!b@h NOTICE Corvamo :\x01VERSION mIRC v6\x01",
                    "[bob VERSION reply]: mIRC v6\x01",
                    {},
                    {}},
        CommandCase{"CtcpPing",
                    ":bob!b@h PRIVMSG Corvamo :\x01PING 12345\x01",
                    "[bob PING]",
                    {},
                    {"NOTICE bob :\x01PING 12345\x01\r\n"}},
        CommandCase{"CtcpVersion",
                    ":bob!b@h PRIVMSG Corvamo :\x01VERSION\x01",
                    "[bob VERSION]",
                    {},
                    {"NOTICE bob :\x01VERSION uscIRC 1.0 - Tallybot IRC control\x01\r\n"}},
        CommandCase{"CtcpTime",
                    ":bob!b@h PRIVMSG Corvamo :\x01TIME\x01",
                    "[bob TIME]",
                    {},
                    {"NOTICE bob :\x01TIME Sun Nov 22 09:05:07 2026\x01\r\n"}},
        CommandCase{"Ignored", ":bob!b@h WALLOPS :hi", "", {}, {}},
        // TrailingAfterPrefix: a host with colons (IPv6) no longer cuts the text.
        CommandCase{"Ipv6HostClassic",
                    ":bob!~b@2001:db8::7 PRIVMSG #Zephra :!info",
                    "<bob> db8::7 PRIVMSG #Zephra :!info",
                    {},
                    {}},
        CommandCase{"Ipv6HostToday",
                    ":bob!~b@2001:db8::7 PRIVMSG #Zephra :!info",
                    "<bob> !info",
                    {"UserCommand !info|bob|~b"},
                    {},
                    kToday},
        // JoinAfter422: a server without a MOTD ends registration like 376.
        CommandCase{"NoMotdClassic", ":s 422 Corvamo :MOTD File is missing", "MOTD File is missing", {}, {}, {}, true},
        CommandCase{"NoMotdToday",
                    ":s 422 Corvamo :MOTD File is missing",
                    "MOTD File is missing",
                    {"StatusChange 2"},
                    {"JOIN #Zephra\r\n"},
                    kToday,
                    true},
        // NickFrom001: 433 during registration retries with "_" (three times), 001 names our nick,
        // so our own JOIN is not someone else's.
        CommandCase{"NickTakenClassic",
                    ":s 433 * Corvamo :in use\n:s 001 Corvamo_ :Welcome\n:s 376 Corvamo_ :End\n"
                    ":Corvamo_!k@h JOIN :#Zephra",
                    "*** Corvamo_ has joined #Zephra",
                    {"StatusChange 2", "StatusChange 3", "UserJoin Corvamo_"},
                    {"JOIN #Zephra\r\n"},
                    {},
                    true},
        CommandCase{"NickTakenToday",
                    ":s 433 * Corvamo :in use\n:s 001 Corvamo_ :Welcome\n:s 376 Corvamo_ :End\n"
                    ":Corvamo_!k@h JOIN :#Zephra",
                    "*** Corvamo_ has joined #Zephra",
                    {"StatusChange 2", "StatusChange 3"},
                    {"NICK Corvamo_\r\n", "JOIN #Zephra\r\n"},
                    kToday,
                    true},
        CommandCase{"NickRetriesStopAtThree",
                    ":s 433 * Corvamo :in use\n:s 433 * Corvamo_ :in use\n:s 433 * Corvamo__ :in use\n"
                    ":s 433 * Corvamo___ :in use",
                    "in use",
                    {},
                    {"NICK Corvamo_\r\n", "NICK Corvamo__\r\n", "NICK Corvamo___\r\n"},
                    kToday,
                    true},
        CommandCase{"NickTakenAfterWelcomeIsNotRetried",
                    ":s 001 Corvamo :Welcome\n:s 433 Corvamo rob :in use",
                    "in use",
                    {},
                    {},
                    kToday,
                    true}),
    [](const auto& info) { return info.param.name; });

TEST(IrcLines, TriggerNeedsSwitchAndExactPrefix) {
    IrcRig rig;
    rig.Join();
    rig.Line(":a!b@h PRIVMSG #Zephra :?info");
    rig.irc.Properties().EnableTrigger = false;
    rig.Line(":a!b@h PRIVMSG #Zephra :!info");
    EXPECT_TRUE(rig.events.empty());
}

TEST(IrcLines, OwnNickChangeFollowsServer) {
    IrcRig rig;
    rig.irc.Properties().Nick = "a";
    rig.Line(":a!u@h NICK :d");
    EXPECT_EQ(rig.irc.Nick(), "d");
    rig.Line(":x!u@h NICK :y");
    EXPECT_EQ(rig.irc.Nick(), "d");
}

TEST(IrcLines, UserListUpkeep) {
    IrcRig rig;
    rig.Join();
    rig.Line(":s 353 Corvamo = #Zephra :Corvamo op bob carl");
    rig.Line(":dan!d@h JOIN :#Zephra");
    rig.Line(":x!x@h MODE #Zephra +o bob");
    rig.Line(":x!x@h MODE #Zephra +v carl");
    rig.Line(":bob!b@h NICK :rob");
    rig.Line(":carl!c@h PART #Zephra");
    rig.Line(":dan!d@h QUIT :bye");
    rig.Line(":op!o@h KICK #Zephra rob :x"); // removes the kicker, as kept
    Strings shown;
    for (const auto& e : rig.irc.Users().Entries())
        shown.push_back(e.Shown());
    EXPECT_EQ(shown, (Strings{"Corvamo", "@rob"}));
}

TEST(IrcLines, TypeFourKeepsNoUserList) {
    IrcRig rig;
    rig.irc.Properties().ControlType = 4;
    rig.Line(":dan!d@h JOIN :#Zephra");
    EXPECT_TRUE(rig.irc.Users().Entries().empty());
}

TEST(IrcLines, CtcpDccIgnoredWhenDisabled) {
    IrcRig rig;
    rig.Join();
    rig.irc.Properties().EnableDCC = false;
    rig.Line(":bob!b@h PRIVMSG Corvamo :\001DCC SEND f 1 2 3\001");
    EXPECT_TRUE(rig.questions.asked.empty());
    EXPECT_TRUE(rig.transport.sent.empty());
}

} // namespace
} // namespace tallybot::irc
