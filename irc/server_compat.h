#pragma once
// What present-day IRC servers need beyond the classic registration and line handling, one
// [Extras] switch each (docs/irc-extras.md). All off: the control behaves as it always did.

namespace tallybot::base {
struct ExtrasSettings;
}

namespace tallybot::irc {

struct ServerCompat {
    bool UserFromIdent = false;       // USER carries the part of the e-mail address before "@"
    bool ShowErrorNumerics = false;   // error numerics 400-599 the classic table skips, in ErrorColor
    bool JoinAfter422 = false;        // "no MOTD" (422) ends registration like 376
    bool TrailingAfterPrefix = false; // the trailing text starts at the first " :" after the prefix
    bool NickFrom001 = false;         // own nick from 001; 433 before it retries the nick with "_"
    bool operator==(const ServerCompat&) const = default;
};

ServerCompat ServerCompatOf(const base::ExtrasSettings& extras);

} // namespace tallybot::irc
