#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace spectrane {

/// What a start of the program finds: folders of its own below one root, and its environment.
struct StartPlace {
  std::string Root;
  /// The application folder, the folder of the runtime (socket and lock), the home folder, the folder for
  /// temporary files.
  std::string App() const { return Root + "/app"; }
  std::string Runtime() const { return Root + "/run"; }
  std::string Home() const { return Root + "/home"; }
  std::string Temporary() const { return Root + "/tmp"; }
  std::string Config() const { return App() + "/config.ini"; }
  std::string Layout() const { return App() + "/layout.ini"; }
  /// Without a screen to sit at, every copy has this name.
  std::string Socket() const { return Runtime() + "/spectrane/e3b0c44298fc"; }
  std::string Lock() const { return Socket() + ".lock"; }

  /// Of the settings file that the program writes on its own.
  std::string Written;
  /// Beside the usual variables; nothing: the variable is not set.
  std::map<std::string, std::optional<std::string>> Environment;
  /// Lives as long as the start does.
  std::vector<std::function<void()>> AtEnd;
};

struct StartDamage {
  std::string Name;
  std::function<void(StartPlace&)> Do;
  /// It shows when the program looks for its instrument, two seconds after the window.
  bool AtThePort = false;
  /// It is none to a user who may do everything.
  bool OfRights = false;
};

/// A hundred ways in which settings, folders, lock and socket can be broken before the program starts. Each
/// name begins with the kind of fault.
const std::vector<StartDamage>& StartDamages();

}  // namespace spectrane
