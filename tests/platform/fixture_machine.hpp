// A machine made of files: folders that stand in the place of /proc and /sys for a test's time.
#ifndef QUILLO_TESTS_FIXTURE_MACHINE_HPP
#define QUILLO_TESTS_FIXTURE_MACHINE_HPP

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "host/sys/roots.hpp"

class FixtureMachine {
public:
    FixtureMachine() : folder_(MakeFolder()), before_(QuilloHost::MachineRoots()) {
        QuilloHost::MachineRoots() = {folder_ + "/proc", folder_ + "/sys"};
        std::filesystem::create_directories(folder_ + "/proc");
    }
    FixtureMachine(FixtureMachine const&) = delete;
    FixtureMachine& operator=(FixtureMachine const&) = delete;
    ~FixtureMachine() {
        QuilloHost::MachineRoots() = before_;
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    // Writes a file such as "proc/meminfo".
    void Write(std::string const& name, std::string const& text) const {
        std::filesystem::path const path = folder_ + "/" + name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }

    void Remove(std::string const& name) const {
        std::filesystem::remove_all(folder_ + "/" + name);
    }

    std::string const& Folder() const { return folder_; }

private:
    static std::string MakeFolder() {
        std::string name = std::filesystem::temp_directory_path() / "quillo-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        return name;
    }

    std::string folder_;
    QuilloHost::Roots before_;
};

#endif
