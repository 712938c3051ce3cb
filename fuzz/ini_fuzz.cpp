// Arbitrary bytes as a settings or profile file: reading must never fail, and a value written
// into the parsed file must read back after the file is written out and read again.

#include "base/ini_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    tallybot::base::IniFile ini;
    ini.Parse(bytes);
    for (const char* section : {"General", "IRC", "Game", "Extras", ""}) {
        (void)ini.GetString(section, "RealName", "tallybot");
        (void)ini.GetInt(section, "QueryTime", 1000);
    }
    ini.WriteString("Game", "QueryTime", "250");
    ini.WriteInt("Extras", "IdentPort", 113);
    tallybot::base::IniFile again;
    again.Parse(ini.Serialize());
    if (again.GetString("game", "querytime", "") != "250" || again.GetInt("EXTRAS", "identport", 0) != 113)
        __builtin_trap();
    return 0;
}
