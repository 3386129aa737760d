#include "tools/installerctl/machine/SharedAuthorizations.h"

namespace installer {

namespace {

/// Stands for the shared right; destroying it gives nothing back.
class Share final : public Authorization {
  public:
    explicit Share(SharedAuthorizations& owner) : owner_(owner) {}
    ~Share() override { setProgressSink(nullptr); }
    Share(const Share&) = delete;
    Share& operator=(const Share&) = delete;

    [[nodiscard]] bool obtain(std::uint32_t /*flags*/) override {
        return owner_.right() != nullptr;
    }
    [[nodiscard]] PrivilegedLaunch execute(const std::string& tool,
                                           const std::vector<std::string>& arguments) override {
        Authorization* right = owner_.right();
        if (right == nullptr) return {authorization_status::denied, nullptr};
        return right->execute(tool, arguments);
    }
    void setProgressSink(ProgressSink* progress) override {
        if (Authorization* right = owner_.right()) right->setProgressSink(progress);
    }

  private:
    SharedAuthorizations& owner_;
};

}  // namespace

std::unique_ptr<Authorization> SharedAuthorizations::create() {
    return std::make_unique<Share>(*this);
}

Authorization* SharedAuthorizations::right() {
    if (!isAsked_) {
        isAsked_ = true;
        right_ = source_->create();
        if (right_ && !right_->obtain(Authorization::extendRights)) right_.reset();
    }
    return right_.get();
}

}  // namespace installer
