#pragma once

#include <set>
#include <string>
#include <tuple>

namespace hidlhost {

/**
 * The services that getService() waits for, as a device does for those of its own manifest. From
 * the file that QELTV_MANIFEST names, read once: lines of package@version::IName/instance, empty
 * lines and comments that begin with #.
 */
class Manifest {
  public:
    static const Manifest& get();

    /** A service of a later minor version serves the interface, too. */
    bool lists(const std::string& interface, const std::string& instance) const;

  private:
    /** Package and major version, name of the interface, instance, minor version. */
    using Service = std::tuple<std::string, std::string, std::string, unsigned>;

    static Manifest fromFile(const std::string& path);
    static bool parse(const std::string& interface, const std::string& instance, Service* service);

    std::set<Service> mServices;
};

}  // namespace hidlhost
