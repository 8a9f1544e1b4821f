#include "tests/scripts/script_project.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace zqm::tests {

namespace fs = std::filesystem;

ScriptProject::ScriptProject(std::string script) : script_(std::move(script)) {
    fs::create_directories(folder_ / "scripts");
    fs::create_directories(folder_ / "replaced");
    fs::create_directories(folder_ / "only");
    for (const std::string& file : {script_, std::string("scripts/setup.bash")}) {
        fs::copy(fs::path(ZQM_SOURCE_FOLDER) / file, folder_ / file);
    }
    write("scripts/packages", "speak bash runs this\n");
}

void ScriptProject::write(const std::string& file, const std::string& contents) const {
    fs::create_directories((folder_ / file).parent_path());
    std::ofstream(folder_ / file) << contents;
}

void ScriptProject::writeProgram(const std::string& file, const std::string& commands) const {
    write(file, "#!/bin/sh\n" + commands + '\n');
    fs::permissions(folder_ / file, fs::perms::owner_all);
}

void ScriptProject::replace(const std::string& program, const std::string& commands) const {
    writeProgram("replaced/" + program, commands);
}

support::ProcessResult ScriptProject::run(const std::vector<std::string>& arguments,
                                          const fs::path& folder) const {
    return run(arguments, folder, (folder_ / "replaced").string() + ':' + std::getenv("PATH"));
}

support::ProcessResult ScriptProject::runWithOnly(const std::vector<std::string>& programs,
                                                  const std::vector<std::string>& arguments) const {
    for (const std::string& program : programs) {
        fs::create_symlink("/usr/bin/" + program, folder_ / ("only/" + program));
    }
    return run(arguments, {}, (folder_ / "only").string());
}

support::ProcessResult ScriptProject::run(const std::vector<std::string>& arguments, const fs::path& folder,
                                          const std::string& path) const {
    support::ProcessOptions options;
    options.environment = {{"PATH", path}};
    options.folder = folder;
    return support::runProcess((folder_ / script_).string(), arguments, options);
}

std::string ScriptProject::read(const std::string& file) const {
    std::ifstream stream(folder_ / file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace zqm::tests
