// The host's start-up code: the only way to create and delete the manager.
#pragma once

#include "qr_config/config/manager/initialization.h"
#include "qr_config/config/readers/load_observer.h"
#include "qr_config/platform/qr_export.h"

// Creates and deletes the process's ConfigManager. Call Initialize once, while no other
// thread uses the library, before anyone calls ConfigManager::Instance(); call Destroy at
// shutdown. After Destroy, Initialize may run again (and reads the files again).
class QR_API ConfigStartup {
 public:
  // Reads the configuration directory named by the registry parameter "Config Directory"
  // (or the environment variable QR_CONFIG_DIR). Throws QRError 259 when a manager exists;
  // on a failed start-up QRError 264 to 267 (file errors, argument: the file's path),
  // QRError 10 (any other error of the library) or an exception of another class. A failed
  // start-up leaves nothing behind; a later Initialize on repaired files succeeds.
  static void Initialize(Initialization::Mode mode);
  // The same, reporting to `observer` what the start-up reads and decides, on this thread,
  // during this call (load_observer.h). Without WantsKeepGoing the work, the result and the
  // exception are those of Initialize(mode); with it, the start-up goes on past an error to
  // report more, and then throws the first error. Costs the records of where each value came
  // from, a fraction of the configuration's own memory.
  static void Initialize(Initialization::Mode mode, LoadObserver& observer);
  // Deletes the manager; does nothing when there is none. Invalidates every reference
  // the manager handed out.
  static void Destroy() noexcept;
};

// Scoped start-up: initialises on construction and destroys on destruction.
class QR_API ConfigSession {
 public:
  explicit ConfigSession(Initialization::Mode mode) { ConfigStartup::Initialize(mode); }
  ConfigSession(Initialization::Mode mode, LoadObserver& observer) {
    ConfigStartup::Initialize(mode, observer);
  }
  ~ConfigSession() { ConfigStartup::Destroy(); }
  ConfigSession(const ConfigSession&) = delete;
  ConfigSession& operator=(const ConfigSession&) = delete;
};
