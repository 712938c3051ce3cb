#pragma once
// Xonotic, Nexuiz and the other games on the DarkPlaces engine answer "getstatus" in the Quake 3
// layout, with keys and player lines of their own and no "\version":
//
//   FF FF FF FF "statusResponse" LF
//   "\gamename\" game "\modname\" mod "\gameversion\" n "\sv_maxclients\" n "\clients\" n "\bots\" n
//   "\mapname\" map "\hostname\" name "\protocol\" n ["\qcstatus\" gametype ":" ...] ... LF
//   score " " ping [" " team] " " "\"" name "\"" LF      (team 1 red, 2 blue; only in team games)
//
// With ModernQuake3 on such a reply is taken as Quake 3 and rewritten into the keys and lines the
// Quake 3 parser reads.

#include <string>
#include <string_view>

namespace tallybot::query {

// True for the DarkPlaces layout: "gamename" first, "modname" second.
bool IsDarkPlacesReply(std::string_view reply);
// Its "gamename" value ("Xonotic"); empty for any other reply.
std::string DarkPlacesGameName(std::string_view reply);

// The same reply as a Quake 3 server would send it: "hostname" as "sv_hostname", the qcstatus
// game type as "g_gametype", team numbers as "players_red"/"players_blue" lists, and DarkPlaces'
// three-digit colours "^xRGB" as "^xRRGGBB" so name cleaning drops them whole.
std::string DarkPlacesAsQuake3(std::string_view reply);

} // namespace tallybot::query
