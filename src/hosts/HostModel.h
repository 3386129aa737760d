#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "hosts/ApertureHostModel.h"
#include "hosts/FireworksHostModel.h"
#include "hosts/LightRoomHostModel.h"
#include "hosts/PhotoshopHostModel.h"
#include "hosts/UnknownHostModel.h"

namespace installer {

/// A host of any of the five kinds, shared: copies are the same host, and two are equal when they
/// are the same host. The kinds have no common base, so code that knows the kind cannot ask what
/// it does not answer; code that works on a mixed list asks by property name and gets "not
/// answered" from a kind that lacks it.
class HostModel {
  public:
    using Kinds = std::variant<PhotoshopHostModel, LightRoomHostModel, ApertureHostModel,
                               FireworksHostModel, UnknownHostModel>;

    // Implicit on purpose: a host of any kind is a host.
    template <class Kind>
        requires std::is_constructible_v<Kinds, Kind>
    HostModel(Kind host) : host_(std::make_shared<Kinds>(std::move(host))) {}

    /// The host as that kind, or null if it is of another. Valid as long as the host is.
    template <class Kind>
    [[nodiscard]] Kind* as() const {
        return std::get_if<Kind>(host_.get());
    }

    /// The answer to a property asked by name ("hostIsInstalled", "hostIsSelected",
    /// "shouldInstallScripts", "shouldInstallPanels", "shouldInstallPlugIns", "hostIs64Bit"), or
    /// nullopt if the kind does not answer it.
    [[nodiscard]] std::optional<bool> booleanNamed(std::string_view property) const;

    /// Selects the host or not; a kind that has no selection stays as it is.
    void setHostIsSelected(bool selected) const;

    /// The answer to "displaySortOrder", or nullopt if the kind does not answer it.
    [[nodiscard]] std::optional<std::uint64_t> displaySortOrder() const;

    /// Every kind has a name.
    [[nodiscard]] std::string hostName() const;

    /// The folder that receives the plug-in; empty for a kind that takes none, and while it is not
    /// known.
    [[nodiscard]] std::string plugInPath() const;

    friend bool operator==(const HostModel& left, const HostModel& right) {
        return left.host_ == right.host_;
    }

  private:
    std::shared_ptr<Kinds> host_;
};

}  // namespace installer
