#include "sources/NoRuntimeFolder.h"

#include <QByteArray>

#include "sources/folder/WorkingParent.h"

namespace lumirra {
namespace {

constexpr char kVariable[] = "XDG_RUNTIME_DIR";

}  // namespace

NoRuntimeFolder::NoRuntimeFolder() {
    if (!qEnvironmentVariableIsEmpty(kVariable)) {
        return;
    }
    // One that cannot be had is told of when it is needed.
    if (const auto parent = WorkingParent::Open()) {
        isSet_ = qputenv(kVariable, parent->path);
    }
}

NoRuntimeFolder::~NoRuntimeFolder() {
    if (isSet_) {
        qunsetenv(kVariable);
    }
}

}  // namespace lumirra
