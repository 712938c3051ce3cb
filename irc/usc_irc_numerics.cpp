// Numeric replies: which are shown, how, and when.

#include "irc/irc_line.h"
#include "irc/usc_irc.h"

#include <array>
#include <cstdio>

namespace tallybot::irc {

namespace {

enum class Shown {
    Nothing,
    Trailing,       // always
    InfoTrailing,   // types 0, 3, 4
    W4Trailing,     // always
    InfoW4Trailing, // types 0, 3, 4
    Special,        // its own rule below
};

struct Row {
    int From;
    int To;
    Shown How;
};

constexpr Row kRows[] = {
    {1, 3, Shown::InfoTrailing},       {200, 206, Shown::W4Trailing},   {208, 208, Shown::W4Trailing},
    {261, 261, Shown::W4Trailing},     {211, 216, Shown::Trailing},     {218, 219, Shown::Trailing},
    {221, 221, Shown::Trailing},       {241, 244, Shown::Trailing},     {256, 259, Shown::Trailing},
    {312, 313, Shown::Trailing},       {318, 318, Shown::Trailing},     {321, 324, Shown::Trailing},
    {329, 329, Shown::Trailing},       {251, 251, Shown::InfoTrailing}, {255, 255, Shown::InfoTrailing},
    {305, 306, Shown::InfoTrailing},   {372, 372, Shown::InfoTrailing}, {375, 375, Shown::InfoTrailing},
    {252, 254, Shown::InfoW4Trailing}, {301, 301, Shown::Special},      {311, 311, Shown::Special},
    {317, 317, Shown::Special},        {319, 319, Shown::Special},      {331, 333, Shown::Special},
    {341, 341, Shown::Special},        {351, 351, Shown::Special},      {353, 353, Shown::Special},
    {376, 376, Shown::Special},        {314, 315, Shown::Trailing},     {342, 342, Shown::Trailing},
    {352, 352, Shown::Trailing},       {364, 369, Shown::Trailing},     {371, 371, Shown::Trailing},
    {374, 374, Shown::Trailing},       {381, 382, Shown::Trailing},     {391, 395, Shown::Trailing},
    {404, 407, Shown::Trailing},       {409, 409, Shown::Trailing},     {411, 414, Shown::Trailing},
    {421, 424, Shown::Trailing},       {431, 433, Shown::Trailing},     {436, 436, Shown::Trailing},
    {441, 446, Shown::Trailing},       {451, 451, Shown::Trailing},     {461, 465, Shown::Trailing},
    {467, 467, Shown::Trailing},       {471, 475, Shown::Trailing},     {481, 483, Shown::Trailing},
    {491, 491, Shown::Trailing},       {501, 502, Shown::Trailing},
};

Shown Classify(int numeric) {
    for (const Row& row : kRows) {
        if (numeric >= row.From && numeric <= row.To) return row.How;
    }
    return Shown::Nothing;
}

constexpr std::array<const char*, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Seconds since 1970 from a reply word, kept within years 1970 to 9999.
std::int64_t EpochWord(const std::string& word) {
    const double value = vb::Val(word);
    if (!(value > 0)) return 0;
    return value > 253402300799.0 ? 253402300799 : static_cast<std::int64_t>(value);
}

} // namespace

std::string uscIRC::FormatDate(std::int64_t epochSeconds) const {
    const LocalTime t = m_clock.FromEpoch(epochSeconds);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", t.Year, t.Month, t.Day, t.Hour, t.Minute,
                  t.Second);
    return text;
}

std::string uscIRC::CtcpTime() const {
    const LocalTime t = m_clock.Now();
    const char* day = kDays[static_cast<std::size_t>(t.Weekday >= 0 && t.Weekday < 7 ? t.Weekday : 0)];
    const char* month = kMonths[static_cast<std::size_t>(t.Month >= 1 && t.Month <= 12 ? t.Month - 1 : 0)];
    char text[64];
    std::snprintf(text, sizeof text, "%s %s %d %02d:%02d:%02d %d", day, month, t.Day, t.Hour, t.Minute, t.Second,
                  t.Year);
    return text;
}

void uscIRC::HandleNumeric(const IrcLine& l, int numeric) {
    ShowNumeric(l, numeric);
    AfterNumeric(l, numeric);
}

void uscIRC::ShowNumeric(const IrcLine& l, int numeric) {
    const std::string& w4 = l.W[4];
    const std::string& w5 = l.W[5];
    const std::string& w6 = l.W[6];
    const std::string& t = l.Trailing;
    switch (Classify(numeric)) {
    case Shown::Nothing:
        if (m_compat.ShowErrorNumerics && numeric >= 400 && numeric <= 599) ShowErrorNumeric(l, numeric);
        return;
    case Shown::Trailing:
        AddText(t, 0);
        return;
    case Shown::InfoTrailing:
        if (ShowsInfo()) AddText(t, 0);
        return;
    case Shown::W4Trailing:
        AddText(w4 + " " + t, 0);
        return;
    case Shown::InfoW4Trailing:
        if (ShowsInfo()) AddText(w4 + " " + t, 0);
        return;
    case Shown::Special:
        break;
    }
    const bool onChannel = m_props.ControlType != 0;
    switch (numeric) {
    case 301:
        AddText("Away : " + t, 0);
        break;
    case 311:
        AddText(w4 + " is " + w5 + "@" + w6 + " * " + t, 0);
        break;
    case 317: // the misspelling is the control's own text
        AddText(w4 + " has been idle " + w5 + " seconds , singed on " + FormatDate(EpochWord(w6)), 0);
        break;
    case 319:
        AddText(w4 + " on " + t, 0);
        break;
    case 331:
        if (onChannel) AddText("*** No Topic is set", m_props.HighlightColor);
        break;
    case 332:
        if (onChannel) AddText("*** Topic is '" + t + "\x03" + "3'", m_props.HighlightColor);
        break;
    case 333:
        if (onChannel) {
            AddText("*** Set by " + w5 + " on " + FormatDate(EpochWord(w6)), m_props.HighlightColor);
        }
        break;
    case 341:
        AddText(w4 + " has been invited to " + w5, 0);
        break;
    case 351:
        AddText("Server Version: " + t, 0);
        break;
    case 353:
        if (KeepsUserList()) {
            m_users.Clear();
            std::size_t pos = 0;
            while (pos <= t.size()) {
                const auto blank = t.find(' ', pos);
                const auto end = blank == std::string::npos ? t.size() : blank;
                if (end > pos) m_users.Add(std::string_view(t).substr(pos, end - pos));
                if (blank == std::string::npos) break;
                pos = blank + 1;
            }
            UserListChanged();
        } else {
            AddText("Namelist: " + t, 0);
        }
        break;
    case 376:
        if (m_status == kConnectRequested && onChannel) AutoJoin();
        break;
    default:
        break;
    }
}

} // namespace tallybot::irc
