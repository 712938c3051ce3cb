#include "fake_irc_transport.h"
#include "irc/dcc_receive.h"

#include <gtest/gtest.h>

namespace tallybot::irc {
namespace {

using testing::IrcRig;
using Strings = std::vector<std::string>;

// 3232235777 is 192.168.1.1.
const std::string kOffer = ":bob!b@h PRIVMSG Corvamo :\001DCC SEND demo.dm_68 3232235777 5000 1234567\001";

TEST(Dcc, HeadlessDeclinesWithTheSizePattern) {
    IrcRig rig;
    rig.Join();
    rig.Line(kOffer);
    EXPECT_EQ(rig.transport.sent,
              Strings{"NOTICE bob :Your DCC request has been declined for demo.dm_68 (1,234,567 bytes)\r\n"});
    EXPECT_EQ(rig.questions.asked, Strings{"Accept DCC?|Incoming DCC file request from bob! Do you want to accept?"});
    EXPECT_EQ(rig.events, Strings{"DCCRequest bob demo.dm_68 192.168.1.1 5000 1234567"});
    EXPECT_TRUE(rig.transport.dccConnects.empty());
}

TEST(Dcc, AcceptedNewFileIsReceivedAndAcknowledged) {
    IrcRig rig;
    rig.Join();
    rig.questions.answers = {true};
    rig.Line(":bob!b@h PRIVMSG Corvamo :\001DCC SEND ../../.bashrc 3232235777 5000 6\001");
    EXPECT_EQ(rig.questions.proposed, "bashrc");
    ASSERT_EQ(rig.transport.dccConnects.size(), 1u);
    EXPECT_EQ(rig.transport.dccConnects[0], std::make_pair(std::string("192.168.1.1"), 5000));
    rig.irc.OnDccConnected();
    rig.irc.OnDccData("abcd");
    rig.irc.OnDccData("efgh"); // two bytes past the offered size are dropped
    EXPECT_EQ(rig.files.files["/downloads/file.bin"], "abcdef");
    EXPECT_EQ(rig.transport.dccSent, std::string("\0\0\0\4\0\0\0\6", 8));
    EXPECT_TRUE(rig.files.closed);
    EXPECT_EQ(rig.transport.dccCloses, 1);
    EXPECT_EQ(rig.LastPane(), "*** DCC transfer of ../../.bashrc complete (6 bytes)");
    EXPECT_EQ(rig.events.back(), "DCCTransfer /downloads/file.bin 6 6");
}

TEST(Dcc, ExistingShorterFileIsOverwrittenOnYes) {
    IrcRig rig;
    rig.files.files["/downloads/file.bin"] = "old";
    rig.questions.answers = {true, true};
    rig.Line(kOffer);
    EXPECT_EQ(rig.questions.asked.back(), "Overwrite exisiting file?|Do you want to overwrite the exisiting file?");
    EXPECT_EQ(rig.files.files.count("/downloads/file.bin"), 0u);
    EXPECT_EQ(rig.transport.dccConnects.size(), 1u);
}

TEST(Dcc, OverwriteRefusedDeclines) {
    IrcRig rig;
    rig.files.files["/downloads/file.bin"] = "old";
    rig.questions.answers = {true, false};
    rig.Line(kOffer);
    EXPECT_EQ(rig.transport.Last(),
              "NOTICE bob :Your DCC request has been declined for demo.dm_68 (1,234,567 bytes)\r\n");
    EXPECT_EQ(rig.files.files["/downloads/file.bin"], "old");
}

TEST(Dcc, LongerLocalFileAsksToResumeThenWaitsForAccept) {
    IrcRig rig;
    rig.files.files["/downloads/file.bin"] = "0123456789";
    rig.questions.answers = {true, true};
    rig.Line(":bob!b@h PRIVMSG Corvamo :\001DCC SEND f.txt 2130706433 4000 8\001");
    EXPECT_EQ(rig.questions.asked.back(), "Resume transfer?|Do you want to resume receiving this file?");
    EXPECT_EQ(rig.transport.Last(), "PRIVMSG bob :\001DCC RESUME f.txt 4000 10\001\r\n");
    EXPECT_TRUE(rig.transport.dccConnects.empty());
    rig.Line(":eve!e@h PRIVMSG Corvamo :\001DCC ACCEPT f.txt 4000 10\001");
    EXPECT_TRUE(rig.transport.dccConnects.empty());
    rig.Line(":bob!b@h PRIVMSG Corvamo :\001DCC ACCEPT f.txt 4000 10\001");
    ASSERT_EQ(rig.transport.dccConnects.size(), 1u);
    EXPECT_EQ(rig.transport.dccConnects[0], std::make_pair(std::string("127.0.0.1"), 4000));
    rig.irc.OnDccConnected();
    rig.irc.OnDccData("more");
    EXPECT_EQ(rig.files.files["/downloads/file.bin"], "0123456789"); // never past the offered size
}

TEST(Dcc, PeerCloseBeforeTheEndIsReported) {
    IrcRig rig;
    rig.questions.answers = {true};
    rig.Line(kOffer);
    rig.irc.OnDccConnected();
    rig.irc.OnDccData("abc");
    rig.irc.OnDccClosed();
    EXPECT_EQ(rig.LastPane(), "*** DCC transfer of demo.dm_68 closed at 3 of 1234567 bytes");
    EXPECT_TRUE(rig.files.closed);
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
