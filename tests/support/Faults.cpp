#include "tests/support/Faults.h"

namespace installer::test {

const FaultPlan* Faults::next(Call call) {
    calls_.push_back(std::move(call));
    const std::size_t place = calls_.size();
    if (place > limit_) throw Runaway();
    if (plan_.place == 0 || place < plan_.place) return nullptr;
    const bool isOfTheKind = calls_.back().front() == calls_[plan_.place - 1].front();
    const bool fails = place == plan_.place || plan_.lasting == Lasting::everything ||
                       (plan_.lasting == Lasting::itsKind && isOfTheKind);
    if (!fails) return nullptr;
    hits_.push_back(calls_.back());
    return &plan_;
}

void Faults::addLost(Call call) {
    calls_.push_back(call);
    hits_.push_back(std::move(call));
}

void Faults::addHit() {
    if (!calls_.empty()) hits_.push_back(calls_.back());
}

std::string joined(const Faults::Call& call) {
    std::string line;
    for (const std::string& word : call) line += (line.empty() ? "" : " ") + word;
    return line;
}

}  // namespace installer::test
