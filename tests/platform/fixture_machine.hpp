// A machine made of files: folders that stand in the place of /proc and /sys for a test's time.
#ifndef QUILLO_TESTS_FIXTURE_MACHINE_HPP
#define QUILLO_TESTS_FIXTURE_MACHINE_HPP

#include <filesystem>
#include <string>

#include "host/sys/roots.hpp"
#include "temp_folder.hpp"

class FixtureMachine {
public:
    FixtureMachine() : before_(QuilloHost::MachineRoots()) {
        QuilloHost::MachineRoots() = {Folder() + "/proc", Folder() + "/sys"};
        std::filesystem::create_directories(Folder() + "/proc");
    }
    FixtureMachine(FixtureMachine const&) = delete;
    FixtureMachine& operator=(FixtureMachine const&) = delete;
    ~FixtureMachine() { QuilloHost::MachineRoots() = before_; }

    // Writes a file such as "proc/meminfo".
    void Write(std::string const& name, std::string const& text) const {
        folder_.Write(name, text);
    }

    void Remove(std::string const& name) const {
        std::filesystem::remove_all(Folder() + "/" + name);
    }

    std::string const& Folder() const { return folder_.path; }

private:
    TempFolder folder_;
    QuilloHost::Roots before_;
};

#endif
