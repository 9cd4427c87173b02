#pragma once

namespace lumirra {

/// While it lives the toolkit makes no folder for sockets: without XDG_RUNTIME_DIR it would make
/// `$TMPDIR/runtime-USER`, and leave it, for a look at what is not there. It looks into the parent
/// of our working folders instead. To be held while the application object is made, before there
/// are other threads. Does nothing where the variable is set.
class NoRuntimeFolder {
  public:
    NoRuntimeFolder();
    ~NoRuntimeFolder();
    NoRuntimeFolder(const NoRuntimeFolder&) = delete;
    NoRuntimeFolder& operator=(const NoRuntimeFolder&) = delete;

  private:
    bool isSet_ = false;
};

}  // namespace lumirra
