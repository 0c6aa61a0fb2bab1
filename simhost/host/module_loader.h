// Loadable modules: finds, checks and unloads them, and notifies them of drawings.
#pragma once

#include <filesystem>
#include <vector>

class CWinApp;

namespace simhost {

class Session;

class ModuleLoader final {
public:
  explicit ModuleLoader(Session& session) : session_(session) {}
  ModuleLoader(const ModuleLoader&) = delete;
  ModuleLoader& operator=(const ModuleLoader&) = delete;
  ~ModuleLoader() { unloadAll(); }

  /// Loads a module, starts its application, and notifies it of the load and of every open drawing. Throws BadInput,
  /// with path and reason, for a file that is not a module or has another version.
  void load(const std::filesystem::path& file);
  /// Tells every module that a drawing has come or is about to go; the drawing is current meanwhile.
  void tellDrawingLoaded();
  void tellDrawingUnloading();
  void unloadAll();

  /// From "DynamicLinker": the application allows its unload.
  void unlock(void* applicationId);

private:
  using EntryPoint = int (*)(int message, void* applicationId);
  struct Module {
    int number = 0;
    std::filesystem::path file;
    void* library = nullptr;
    EntryPoint entry = nullptr;
    CWinApp* application = nullptr; ///< lives in the library; null when it has none
    bool isUnlocked = false;
  };

  void tell(const Module& module, int message);
  void tellAll(int message);

  Session& session_;
  std::vector<Module> modules_;
  int lastNumber_ = 0;
};

/// The module "ZanBrenvolt.kvx" beside the program.
[[nodiscard]] std::filesystem::path defaultModule();

} // namespace simhost
