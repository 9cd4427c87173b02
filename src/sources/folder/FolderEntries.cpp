#include "sources/folder/FolderEntries.h"

#include <dirent.h>
#include <fcntl.h>

#include <memory>

namespace lumirra {

QByteArrayList FolderEntries(const Descriptor& folder) {
    // A descriptor of its own: reading moves its position, and closing the stream closes it.
    const int own = ::openat(folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (own < 0) {
        return {};
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(own), &::closedir);
    if (!stream) {
        ::close(own);
        return {};
    }
    QByteArrayList names;
    while (const dirent* entry = ::readdir(stream.get())) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..") {
            names << name;
        }
    }
    return names;
}

}  // namespace lumirra
