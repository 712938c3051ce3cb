// The IRC core's pure helpers and limits: line splitting, addresses, channel names, the input
// history and DCC names. The control's behaviour is pinned by the scripts of irc_transcript_test.

#include "fake_irc_transport.h"
#include "irc/dcc_receive.h"
#include "irc/input_history.h"
#include "irc/irc_line.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

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

TEST(IrcLimits, LineTableOverflowIsReported) {
    testing::IrcRig rig;
    std::string burst;
    for (int i = 0; i < 400; ++i)
        burst += "PING :x\r\n";
    rig.irc.OnServerData(burst);
    EXPECT_EQ(rig.LastPane(), "[IRC] SERVER Error #9: Subscript out of range");
    EXPECT_TRUE(rig.transport.sent.empty());
}

TEST(IrcHelpers, AddressesAndChannelNames) {
    EXPECT_EQ(uscIRC::Dotted2LongIP("192.168.1.1"), 3232235777.0);
    EXPECT_EQ(uscIRC::LongIP2Dotted(3232235777.0), "192.168.1.1");
    EXPECT_EQ(uscIRC::LongIP2Dotted(uscIRC::Dotted2LongIP("255.255.255.255")), "255.255.255.255");
    testing::IrcRig rig;
    EXPECT_EQ(rig.irc.GetIPAddress(), "192.168.1.5");
    rig.transport.hostName.clear();
    rig.transport.hostError = 10093;
    EXPECT_EQ(rig.irc.GetIPAddress(),
              "Windows Sockets error 10093 has occurred. Unable to successfully get Host Name.\r\n");
    rig.irc.SetChannelName("quake");
    EXPECT_EQ(rig.irc.ChannelName(), "#quake");
    rig.irc.SetChannelName("#ctf");
    EXPECT_EQ(rig.irc.ChannelName(), "#ctf");
    rig.irc.SetChannelName("x");
    EXPECT_EQ(rig.irc.ChannelName(), "#Zephra");
}

TEST(IrcHelpers, EnteredLinesGoToTheHistoryAndLinksOpen) {
    testing::IrcRig rig;
    rig.Join();
    rig.irc.EnterInput("/join #a");
    EXPECT_EQ(rig.irc.History().Slot(0), "/join #a");
    std::string opened;
    rig.irc.View().OpenLink = [&](const std::string& link) { opened = link; };
    rig.irc.ClickWord("www.example.org");
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

TEST(DccHelpers, SafeBaseNameAndByteCount) {
    EXPECT_EQ(SafeBaseName("C:\\windows\\system.ini"), "system.ini");
    EXPECT_EQ(SafeBaseName("..."), "dcc_file");
    EXPECT_EQ(SafeBaseName(std::string("a\0b\"c", 5)), "abc");
    EXPECT_EQ(FormatByteCount(0), "");
    EXPECT_EQ(FormatByteCount(999), "999");
    EXPECT_EQ(FormatByteCount(1000), "1,000");
    EXPECT_EQ(FormatByteCount(123456789012.0), "123,456,789,012");
}

} // namespace
} // namespace tallybot::irc
