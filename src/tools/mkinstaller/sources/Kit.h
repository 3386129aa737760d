#pragma once

#include <optional>
#include <string>

namespace installer {

/// What mkinstaller brings with it: the program that every bundle carries, the layouts and pictures
/// that a product has unless it brings its own, and the texts that a new product begins with.
struct Kit {
    std::string folder;

    /// The folder `runtime` beside the running program, or where a package installs it. None when
    /// there is neither.
    [[nodiscard]] static std::optional<Kit> ofRunningProgram();

    /// Shaped like a bundle: it has `Contents/MacOS`, `Contents/Frameworks`, `Contents/Resources`.
    [[nodiscard]] std::string bundle() const { return folder; }
    [[nodiscard]] std::string contents() const;
    /// The layouts and pictures of the program.
    [[nodiscard]] std::string resources() const;
    /// Language folders with every text and page, written for the sample product.
    [[nodiscard]] std::string texts() const;
    /// The explanation of every finding, docs/lint.md.
    [[nodiscard]] std::string explanations() const;
    /// The lines for the shell with which a self-extracting file begins.
    [[nodiscard]] std::string runHead() const;
};

}  // namespace installer
