#include "tests/install/shipped_files.h"

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;

const std::string kVersion = ZQM_VERSION;
const std::string kLib = ZQM_LIB "/";
const std::string kHeaders = ZQM_INCLUDE "/zqmhost/";
const std::string kPlatformHeaders = ZQM_INCLUDE "/zqmplatform/";
const std::string kConfig = ZQM_LIB "/cmake/zqmhost/zqmhost-";

// These have no list of their own here: a new document or example is shipped without further ado.
Files documentsForHosts() {
    Files files;
    for (const char* folder : {"docs/", "examples/"}) {
        for (const std::string& file : filesIn(fs::path(ZQM_SOURCE_FOLDER) / folder)) {
            if (!file.ends_with("CMakeLists.txt")) {
                files.insert((fs::path(kDocuments) / folder / file).string());
            }
        }
    }
    return files;
}

Files pythonPackage() {
    const std::string package = ZQM_PYTHON_FOLDER "/zqm/";
    Files files{package + ZQM_PYTHON_MODULE, kDocuments + "examples/reader.py"};
    for (const std::string& file : filesIn(ZQM_SOURCE_FOLDER "/python/zqm")) {
        if (file.find("__pycache__") == std::string::npos) {
            files.insert(package + file);
        }
    }
    return files;
}

} // namespace

const std::string kDocuments = ZQM_SHARE "/doc/zqmspeech/";
const std::string kPlatformLibrary = kLib + "libzqmplatform.so." + kVersion.substr(0, kVersion.rfind('.'));

const Files kCommonDocuments = {kDocuments + "CHANGELOG.md", kDocuments + "README.md",
                                kDocuments + "copyright"};

const std::vector<Component> kComponents = {
    {"plugin",
     "zqmspeech-plugin",
     {kLib + "libZQMFoundation.so", kLib + "libZQMNSSpeech.so", kPlatformLibrary,
      ZQM_LIBEXEC "/zqmspeech/zqmspeech-engine"}},
    {"command",
     "zqmspeech",
     {ZQM_BIN "/zqmspeech", ZQM_SHARE "/bash-completion/completions/zqmspeech",
      ZQM_SHARE "/fish/vendor_completions.d/zqmspeech.fish", ZQM_SHARE "/man/man1/zqmspeech.1",
      ZQM_SHARE "/zsh/site-functions/_zqmspeech"}},
    {"development", "libzqmhost-dev",
     joined({kLib + "libzqmhost.a",
             kLib + "libzqmplatform.so",
             kLib + "pkgconfig/zqmhost.pc",
             kConfig + "config.cmake",
             kConfig + "config-version.cmake",
             kConfig + "targets.cmake",
             kConfig + "targets-relwithdebinfo.cmake",
             kHeaders + "array.h",
             kHeaders + "class_definition.h",
             kHeaders + "class_description.h",
             kHeaders + "dictionary.h",
             kHeaders + "entry_point_control.h",
             kHeaders + "errors.h",
             kHeaders + "folder_item.h",
             kHeaders + "memory_block.h",
             kHeaders + "object.h",
             kHeaders + "plugin/host_interface.h",
             kHeaders + "report.h",
             kHeaders + "runtime.h",
             kHeaders + "string.h",
             kHeaders + "text.h",
             kHeaders + "value.h",
             kHeaders + "zqmhost.h"},
            joined({kPlatformHeaders + "linkage.h", kPlatformHeaders + "listening.h",
                    kPlatformHeaders + "speaking.h"},
                   documentsForHosts()))},
    {"python", "python3-zqm", pythonPackage()},
};

Files filesIn(const fs::path& folder) {
    Files files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_directory()) {
            files.insert(entry.path().lexically_relative(folder).string()); // of a link, not of what it names
        }
    }
    return files;
}

Files joined(Files one, const Files& other) {
    one.insert(other.begin(), other.end());
    return one;
}

} // namespace zqm::tests
