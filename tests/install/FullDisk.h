#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "support/RecordingFileManager.h"

namespace installer::test {

class FullDisk : public WritableFile {
  public:
    std::error_code write(std::string_view) override {
        return std::make_error_code(std::errc::no_space_on_device);
    }
};

/// Opens files that cannot be written to.
class FullFileManager : public RecordingFileManager {
  public:
    using RecordingFileManager::RecordingFileManager;
    Result<std::unique_ptr<WritableFile>> openForWriting(const std::string&) override {
        std::unique_ptr<WritableFile> file = std::make_unique<FullDisk>();
        return file;
    }
};

}  // namespace installer::test
