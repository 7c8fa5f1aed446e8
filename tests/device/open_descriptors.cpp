#include "device/open_descriptors.hpp"

#include <fcntl.h>

#include <filesystem>
#include <string>

std::set<int> OpenDescriptors() {
    std::set<int> listed;
    for (auto const& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        listed.insert(std::stoi(entry.path().filename().string()));
    }
    std::set<int> open;
    for (int fd : listed) {
        // The listing's own descriptor is closed by now.
        if (fcntl(fd, F_GETFD) != -1) {
            open.insert(fd);
        }
    }
    return open;
}

std::set<int> OpenedSince(std::set<int> const& before) {
    std::set<int> opened;
    for (int fd : OpenDescriptors()) {
        if (before.count(fd) == 0) {
            opened.insert(fd);
        }
    }
    return opened;
}
