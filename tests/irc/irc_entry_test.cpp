#include "fake_irc_transport.h"
#include "irc/input_history.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

using testing::IrcRig;
using Strings = std::vector<std::string>;

struct EntryCase {
    std::string name;
    std::string input;
    int controlType;
    Strings sent;
    std::string shown; // last pane line after the entry, "" for none
};

class UserEntry : public ::testing::TestWithParam<EntryCase> {};

TEST_P(UserEntry, SendsAndWrites) {
    IrcRig rig;
    rig.Join();
    rig.irc.Properties().ControlType = GetParam().controlType;
    const auto before = rig.irc.PaneLines().size();
    rig.irc.ProcessUserEntry(GetParam().input);
    EXPECT_EQ(rig.transport.sent, GetParam().sent);
    if (GetParam().shown.empty()) {
        EXPECT_EQ(rig.irc.PaneLines().size(), before) << rig.LastPane();
    } else {
        EXPECT_EQ(rig.LastPane(), GetParam().shown);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, UserEntry,
    ::testing::Values(
        EntryCase{"ChannelText", "hello all", 3, {"PRIVMSG #Zephra :hello all\r\n"}, "<Corvamo> hello all"},
        EntryCase{"BlankText", "   ", 3, {}, ""},
        EntryCase{"TextTypeZero", "hi", 0, {}, "*** You are not on a channel"},
        EntryCase{"Me", "/me waves", 3, {"PRIVMSG #Zephra :\001ACTION waves\001\r\n"}, "* Corvamo waves"},
        EntryCase{"MeTypeZero", "/ME waves", 0, {}, "*** You are not on a channel"},
        EntryCase{"Join", "/join #ctf", 0, {"JOIN #ctf\r\n"}, ""},
        EntryCase{"Msg", "/msg bob hi there", 3, {"PRIVMSG bob :hi there\r\n"}, "-> *bob* hi there"},
        EntryCase{"Topic",
                  "/topic #Zephra frag on",
                  3,
                  {"TOPIC #Zephra :frag on\r\n"},
                  "*** Corvamo changes topic to 'frag on'"},
        EntryCase{"TopicTypeZero", "/topic #Zephra x", 0, {}, "*** You are not on a channel"},
        EntryCase{"Invite", "/invite bob #Zephra", 3, {"INVITE bob :#Zephra\r\n"}, ""},
        EntryCase{"Whois", "/whois  bob ", 0, {"WHOIS bob\r\n"}, ""},
        EntryCase{"ListAnyType", "/list", 0, {"LIST \r\n"}, ""},
        EntryCase{"Nick", "/nick Other", 3, {"NICK Other\r\n"}, ""},
        EntryCase{"Part", "/part #Zephra", 3, {"PART #Zephra\r\n"}, ""},
        EntryCase{"NamesTypeZero", "/names", 0, {}, "*** You are not on a channel"},
        EntryCase{"Kick", "/kick #Zephra bob", 1, {"KICK #Zephra bob\r\n"}, ""},
        EntryCase{"Rehash", "/rehash now", 3, {"REHASH\r\n"}, ""},
        EntryCase{"Ping", "/ping bob", 3, {"PRIVMSG bob :\x01PING 123456\x01\r\n"}, "-> [bob] PING"},
        EntryCase{"VersionServer", "/version", 3, {"VERSION\r\n"}, ""},
        EntryCase{"VersionNick", "/version bob", 3, {"PRIVMSG bob :\x01VERSION\x01\r\n"}, "-> [bob] VERSION"},
        EntryCase{"TimeServer", "/time", 3, {"TIME\r\n"}, ""},
        EntryCase{"TimeNick", "/time bob", 3, {"PRIVMSG bob :\x01TIME\x01\r\n"}, "-> [bob] TIME"},
        EntryCase{"Quit", "/quit see you", 3, {"QUIT see\xA0you\r\n"}, ""},
        EntryCase{"UnknownDropped", "/frobnicate x", 3, {}, ""},
        EntryCase{"ZeroIsReported", "/0", 3, {}, "0 - unknown command"}, EntryCase{"PrefixAlone", "/", 3, {}, ""}),
    [](const auto& info) { return info.param.name; });

TEST(UserEntryState, TextNeedsStateThree) {
    IrcRig rig;
    rig.irc.Connect();
    rig.irc.ProcessUserEntry("hi");
    EXPECT_EQ(rig.LastPane(), "*** You are not connected to a server");
}

TEST(UserEntryState, EnterStoresHistoryAndClickJoinsChannels) {
    IrcRig rig;
    rig.Join();
    rig.irc.EnterInput("/join #a");
    EXPECT_EQ(rig.irc.History().Slot(0), "/join #a");
    rig.irc.ClickWord("#ctf");
    std::string opened;
    rig.irc.View().OpenLink = [&](const std::string& link) { opened = link; };
    rig.irc.ClickWord("www.example.org");
    EXPECT_EQ(rig.transport.sent, (Strings{"JOIN #a\r\n", "JOIN #ctf\r\n"}));
    EXPECT_EQ(opened, "www.example.org");
}

TEST(InputHistoryTable, WrapsToSlotOneNeverSlotZero) {
    InputHistory h;
    for (int i = 0; i < 100; ++i)
        h.Store("line" + std::to_string(i));
    EXPECT_EQ(h.WriteIndex(), 1);
    EXPECT_EQ(h.Slot(0), "line0");
    EXPECT_EQ(h.Slot(99), "line99");
    EXPECT_EQ(h.Slot(100), "");
    h.Store("line100");
    EXPECT_EQ(h.Slot(1), "line100");
    EXPECT_EQ(h.Slot(0), "line0");
    for (int i = 101; i < 300; ++i)
        h.Store("line" + std::to_string(i));
    EXPECT_EQ(h.Slot(0), "line0");
    EXPECT_EQ(h.Slot(100), "");
}

TEST(InputHistoryTable, UpAndDownStepThroughEnteredLines) {
    InputHistory h;
    EXPECT_EQ(h.Up(), "");
    h.Store("a");
    h.Store("b");
    EXPECT_EQ(h.Up(), "b");
    EXPECT_EQ(h.Up(), "a");
    EXPECT_EQ(h.Up(), "a");
    EXPECT_EQ(h.Down(), "b");
    EXPECT_EQ(h.Down(), "");
}

} // namespace
} // namespace tallybot::irc
