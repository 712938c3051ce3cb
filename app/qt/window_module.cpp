#include "app/qt/window_module.h"

#include <cstdio>
#include <dlfcn.h>
#include <filesystem>
#include <system_error>

namespace tallybot::app {
namespace {

// No application object exists yet (the module creates its own), so the kernel names the folder.
std::string ExecutableFolder(const char* argv0) {
    std::error_code error;
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) self = std::filesystem::absolute(argv0 ? argv0 : "tallybot", error);
    return self.parent_path().string();
}

} // namespace

std::vector<std::string> WindowModuleCandidates(const std::string& programFolder) {
    return {programFolder + "/" + kWindowModuleFile, programFolder + "/../lib/tallybot/" + kWindowModuleFile};
}

int RunWindowModule(int& argc, char** argv, const CommandLine& line) {
    const std::string folder = ExecutableFolder(argc > 0 ? argv[0] : nullptr);
    for (const std::string& path : WindowModuleCandidates(folder)) {
        std::error_code error;
        if (!std::filesystem::exists(path, error)) continue;
        // Kept loaded to the end: the module's static objects are destroyed at exit.
        void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (module == nullptr) {
            std::fprintf(stderr, "tallybot: The window module %s could not be loaded: %s; run with --headless\n",
                         path.c_str(), ::dlerror());
            return 1;
        }
        auto windowMain = reinterpret_cast<WindowMainFunction>(::dlsym(module, kWindowMainSymbol));
        if (windowMain == nullptr) {
            std::fprintf(stderr, "tallybot: The window module %s has no entry %s; run with --headless\n", path.c_str(),
                         kWindowMainSymbol);
            return 1;
        }
        return windowMain(&argc, argv, &line);
    }
    std::fprintf(stderr,
                 "tallybot: The window module %s was not found in %s or %s/../lib/tallybot; run with --headless\n",
                 kWindowModuleFile, folder.c_str(), folder.c_str());
    return 1;
}

} // namespace tallybot::app
