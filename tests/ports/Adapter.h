#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace installer::test {

/// One implementation of a port, for the port's contract: its name, and what makes it with the
/// scene around it. A scene is what the contract asks of the implementation's own world: to put a
/// file where the file manager looks, for example.
template <class Scene>
struct Adapter {
    const char* name;
    std::unique_ptr<Scene> (*make)();
};

/// The fixture of a contract: each test has a new scene.
template <class Scene>
class Contract : public testing::TestWithParam<Adapter<Scene>> {
  protected:
    std::unique_ptr<Scene> scene_ = this->GetParam().make();
};

/// Names the tests of a contract by the implementation.
struct AdapterName {
    template <class Scene>
    std::string operator()(const testing::TestParamInfo<Adapter<Scene>>& info) const {
        return info.param.name;
    }
};

template <class Scene>
void PrintTo(const Adapter<Scene>& adapter, std::ostream* stream) {
    *stream << adapter.name;
}

}  // namespace installer::test
