#include "base/app_log.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <sys/utsname.h>

namespace tallybot::base {

namespace {

// "MemTotal:  16318520 kB" lines of /proc/meminfo, in KB.
std::map<std::string, long long> MemoryCounters() {
    std::map<std::string, long long> counters;
    std::ifstream in("/proc/meminfo");
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string name;
        long long value = 0;
        if (fields >> name >> value && !name.empty() && name.back() == ':') {
            name.pop_back();
            counters[name] = value;
        }
    }
    return counters;
}

} // namespace

SystemFacts CollectSystemFacts() {
    SystemFacts facts;
    utsname names{};
    if (::uname(&names) == 0) facts.osVersion = std::string(names.sysname) + " " + names.release + " " + names.machine;
    facts.browserVersion = "none";
    facts.graphicsVersion = "none";
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value && *value) {
            facts.osLanguage = value;
            break;
        }
    }
    auto memory = MemoryCounters();
    if (memory.count("MemTotal")) {
        // Physical and swap-backed ("virtual") memory, available/total in KB.
        long long physTotal = memory["MemTotal"];
        long long physAvail = memory.count("MemAvailable") ? memory["MemAvailable"] : memory["MemFree"];
        long long virtTotal = physTotal + memory["SwapTotal"];
        long long virtAvail = physAvail + memory["SwapFree"];
        facts.memory = std::to_string(physAvail) + "/" + std::to_string(physTotal) + " physical, " +
                       std::to_string(virtAvail) + "/" + std::to_string(virtTotal) + " virtual";
    }
    return facts;
}

} // namespace tallybot::base
