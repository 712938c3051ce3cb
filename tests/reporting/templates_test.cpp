#include "base/escape_marks.h"
#include "base/vb_convert.h"
#include "reporting/templates.h"
#include "tests/reporting/reporting_fixture.h"
#include "tests/support/fixture_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>

namespace tallybot::reporting::test {
namespace {

class TemplateTest : public ReportingTest {
protected:
    TemplateTest() {
        teamRed = "  Alpha ";
        Profile().Scoring = 2;
        AddPlayer("kavik", 12, 50, 1);
        AddPlayer("zeph", 7, 80, 2);
        game.TeamScoreRed = 3;
        game.TeamScoreBlue = 1;
        state.LastPostedRed = 1;
        state.LastPostedBlue = 4;
        state.CappingPlayer = 1;
    }
};

struct MarkCase {
    const char* mark;
    const char* live;
    const char* sample;
};

const MarkCase kMarkCases[] = {
    {"%sip%", "10.0.0.1:27960", "192.168.0.1:27960"},
    {"%sna%", "Zephra", "Zephra Server"},
    {"%sve%", "Q3 1.32", "Q3 1.32 linux-i386 Oct 7 2002"},
    {"%gna%", "osp", "osp"},
    {"%gve%", "OSP 1.01", "OSP 1.01"},
    {"%mtl%", "15:00", "15:00"},
    {"%map%", "q3wctf1", "q3wctf2"},
    {"%mpl%", "16", "14"},
    {"%npl%", "2", "5"},
    {"%tnr%", "Alpha", "Red"},
    {"%tnb%", "Blue", "Blue"},
    {"%tsr%", "3", "1"},
    {"%tsb%", "1", "2"},
    {"%sdb%", "-3", "+1"},
    {"%sdr%", "+2", "+0"},
    {"%apr%", "50", "30"},
    {"%apb%", "80", "20"},
    {"%fcb%", "kavik", "kavik"},
    {"$ec$", "\00310", "\00310"},
    {"$ic$", "\0032", "\0032"},
    {"#fca#x", "x", "x"},
};

TEST_F(TemplateTest, EveryMarkExpandsToItsLiveAndSampleValue) {
    for (const MarkCase& c : kMarkCases) {
        ReportingState saved = state;
        EXPECT_EQ(Expand(std::string("<") + c.mark + ">", true), std::string("<") + c.sample + ">") << c.mark;
        EXPECT_EQ(Expand(std::string("<") + c.mark + ">"), std::string("<") + c.live + ">") << c.mark;
        state = saved;
    }
}

TEST_F(TemplateTest, PickerListsTheTwentyTwoMarksAndInsertsTheMarkOfAnEntry) {
    ASSERT_EQ(kTemplateMarks.size(), 22u);
    EXPECT_EQ(kTemplateMarks[0].pickerEntry, "%sip% - Server IP");
    EXPECT_EQ(kTemplateMarks[17].pickerEntry, "%fcb% - Flag capped by (CTF)");
    for (const TemplateMark& m : kTemplateMarks)
        EXPECT_EQ(MarkOfPickerEntry(m.pickerEntry), m.mark);
}

TEST_F(TemplateTest, DifferenceIsTakenAgainstTheLastPostedScore) {
    state.LastPostedRed = 0;
    EXPECT_EQ(Expand("%sdr%"), "+3");
    EXPECT_EQ(Expand("%sdr%"), "+0");
    EXPECT_EQ(state.LastPostedRed, 3);
    EXPECT_EQ(state.LastPostedBlue, 4); // untouched without "%sdb%"
}

TEST_F(TemplateTest, ConditionClauseRunsToTheEndOfTheLine) {
    EXPECT_EQ(Expand("A#fca#B#fca#C"), "ABC");
    Profile().Scoring = 0;
    EXPECT_EQ(Expand("A#fca#B#fca#C"), "A");
    Profile().Scoring = 2;
    state.CappingPlayer = 0;
    EXPECT_EQ(Expand("A#fca#B#fca#C"), "A");
}

TEST_F(TemplateTest, RemovedClauseDoesNotCountAsPosted) {
    Profile().Scoring = 0;
    EXPECT_EQ(Expand("x#fca#%sdb%"), "x");
    EXPECT_EQ(state.LastPostedBlue, 4);
}

TEST_F(TemplateTest, BothScoresZeroOrResetClearTheLastPostedScores) {
    EXPECT_EQ(Expand("", false, true), "");
    EXPECT_EQ(state.LastPostedRed, 0);
    EXPECT_EQ(state.LastPostedBlue, 0);
    state.LastPostedRed = 5;
    game.TeamScoreRed = game.TeamScoreBlue = 0;
    EXPECT_EQ(Expand("plain %sdr%"), "plain -5"); // computed before the reset
    EXPECT_EQ(state.LastPostedRed, 0);
}

TEST_F(TemplateTest, AveragePingRoundsHalfToEven) {
    const struct {
        std::vector<int> pings;
        const char* average;
    } cases[] = {{{50, 51}, "50"}, {{51, 52}, "52"}, {{1}, "1"}, {{}, "0"}, {{1, 0}, "1"}, {{10, 20, 40}, "23"}};
    for (const auto& c : cases) {
        game.Status.NumPlayers = 0;
        for (int ping : c.pings)
            AddPlayer("p", 0, ping, 1);
        EXPECT_EQ(Expand("%apr%"), c.average);
    }
}

TEST_F(TemplateTest, BlankTeamNameFallsBackToTheTeamColour) {
    teamRed = "   ";
    EXPECT_EQ(Expand("%tnr%/%tnb%"), "Red/Blue");
}

TEST_F(TemplateTest, ValuesAreExpandedAgainByLaterMarksOnly) {
    game.Status.HostName = "%map% $ec$";
    game.Status.MapName = "%sna%";
    EXPECT_EQ(Expand("%sna%"), "%sna% $ec$");
}

struct ColourFitCase {
    const char* text;
    const char* info; // InfoTextCol
    const char* classic;
    const char* fitted;
};

// "%mpl%" is 16, "%npl%" 2, "%fcb%" kavik.
const ColourFitCase kColourFitCases[] = {
    {"$ic$%mpl%", "\0032", "\003216", "\0030216"},
    {"$ic$ %mpl%", "\0032", "\0032 16", "\0032 16"},
    {"$ec$%mpl%", "\0032", "\0031016", "\0031016"},
    {"$ic$7%gna%", "\0032", "\00327osp", "\003027osp"},
    {"$ic$,$ec$", "\0032", "\0032,\00310", "\00302,\00310"},
    {"$ic$$ic$%mpl%", "\0032", "\0032\003216", "\0032\0030216"},
    {"$ic$%fcb%$ic$%npl%", "\0032", "\0032kavik\00322", "\0032kavik\003022"},
    {"$ic$%mpl%", "\0032,1", "\0032,116", "\0032,0116"},
    {"$ic$", "\0032", "\0032", "\0032"},
};

TEST_F(TemplateTest, TwoDigitColoursWidenACodeBeforeADigitOrAComma) {
    for (const ColourFitCase& c : kColourFitCases) {
        const ReportingState saved = state;
        settings.InfoTextCol = c.info;
        settings.Extras.TwoDigitColours = 0;
        EXPECT_EQ(Expand(c.text), c.classic) << c.text;
        state = saved;
        settings.Extras.TwoDigitColours = 1;
        EXPECT_EQ(Expand(c.text), c.fitted) << c.text;
        EXPECT_EQ(Expand(c.text, true), Expand(c.text, true)) << c.text; // previews keep the classic codes
        state = saved;
    }
}

// The shipped profiles' texts read the same in an IRC client with the switch off and on.
TEST_F(TemplateTest, ShippedProfileTextsNeedNoWidenedColours) {
    const std::filesystem::path root = tallybot::test::SourceRoot();
    int texts = 0;
    for (const auto& entry : std::filesystem::directory_iterator(root / "profiles" / "default")) {
        std::ifstream in(entry.path(), std::ios::binary);
        for (std::string line; std::getline(in, line);) {
            if (!line.starts_with("Message") || line.find('=') == std::string::npos) continue;
            std::string text = line.substr(line.find('=') + 1);
            if (!text.empty() && text.back() == '\r') text.pop_back();
            base::UnescapeControlCodes(text);
            const ReportingState saved = state;
            settings.Extras.TwoDigitColours = 0;
            const std::string classic = ShownByClient(Expand(text));
            state = saved;
            settings.Extras.TwoDigitColours = 1;
            EXPECT_EQ(classic, ShownByClient(Expand(text))) << entry.path() << ": " << text;
            state = saved;
            ++texts;
        }
    }
    EXPECT_GT(texts, 0);
}

TEST_F(TemplateTest, ProgramErrorsAbandonTheLine) {
    state.CappingPlayer = 51;
    EXPECT_THROW(Expand("x"), vb::VbError);
    state.CappingPlayer = 0;
    game.Status.NumPlayers = 51;
    EXPECT_THROW(Expand("x"), vb::VbError);
    game.Status.NumPlayers = 2;
    game.TeamScoreRed = std::numeric_limits<std::int32_t>::min();
    EXPECT_THROW(Expand("%sdr%"), vb::VbError);

    Profile().Message = "%sdr%";
    rep.Posts.mnuPostCustomMess();
    EXPECT_TRUE(channel.lines.empty());
    EXPECT_EQ(log.ErrorCount(), 1);
    EXPECT_NE(log.LogText().find("mnuPostCustomMess_Click"), std::string::npos);
}

} // namespace
} // namespace tallybot::reporting::test
