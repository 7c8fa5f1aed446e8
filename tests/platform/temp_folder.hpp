// A folder of a test's own, gone when the test is over.
#ifndef QUILLO_TESTS_TEMP_FOLDER_HPP
#define QUILLO_TESTS_TEMP_FOLDER_HPP

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

class TempFolder {
public:
    TempFolder() : path((std::filesystem::temp_directory_path() / "quillo-test-XXXXXX").string()) {
        if (mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error("no folder can be made: " + path);
        }
    }
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;
    ~TempFolder() {
        std::error_code error;
        std::filesystem::remove_all(path, error);
    }

    // Writes a file, and the folders it lies in.
    void Write(std::string const& name, std::string const& text) const {
        std::filesystem::path const file = std::filesystem::path(path) / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

    std::string path;
};

#endif
